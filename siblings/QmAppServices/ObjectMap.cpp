#include "com/component/Component.h"
#include "siblings/QmAppServices/ApplicationServices.h"

namespace qm::com {

const ObjectMap& GetComponentObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_ApplicationServices, L"QmAppServices.ApplicationServices.1",
       L"QmAppServices.ApplicationServices", IDS_COMPONENT_DESCRIPTION,
       &CreateComObject<siblings::CApplicationServices>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}

}  // namespace qm::com
