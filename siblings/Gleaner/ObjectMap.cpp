#include "com/component/Component.h"
#include "siblings/Gleaner/IniReader.h"

namespace qm::com {

const ObjectMap& GetComponentObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_IniReader, L"Gleaner.IniReader.1", L"Gleaner.IniReader", IDS_COMPONENT_DESCRIPTION,
       &CreateComObject<siblings::CIniReader>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}

}  // namespace qm::com
