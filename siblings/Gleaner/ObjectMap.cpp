#include "siblings/Component/Component.h"
#include "siblings/Gleaner/IniReader.h"

const ObjectMap& ComponentObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_IniReader, L"Gleaner.IniReader.1", L"Gleaner.IniReader", IDS_COMPONENT_DESCRIPTION,
       &CreateComObject<CIniReader>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}
