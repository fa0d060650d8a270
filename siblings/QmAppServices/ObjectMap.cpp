#include "siblings/Component/Component.h"
#include "siblings/QmAppServices/ApplicationServices.h"

namespace qm::siblings {

const com::ObjectMap& GetComponentObjects() noexcept {
  static const com::ObjectMapEntry entries[] = {
      {&CLSID_ApplicationServices, L"QmAppServices.ApplicationServices.1",
       L"QmAppServices.ApplicationServices", IDS_COMPONENT_DESCRIPTION,
       &com::CreateComObject<CApplicationServices>},
  };
  static const com::ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}

}  // namespace qm::siblings
