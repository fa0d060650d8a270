#include "siblings/Component/Component.h"
#include "siblings/QmAppServices/ApplicationServices.h"

const ObjectMap& ComponentObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_ApplicationServices, L"QmAppServices.ApplicationServices.1",
       L"QmAppServices.ApplicationServices", IDS_COMPONENT_DESCRIPTION,
       &CreateComObject<CApplicationServices>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}
