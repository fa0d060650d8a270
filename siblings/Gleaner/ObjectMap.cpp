#include "siblings/Component/Component.h"
#include "siblings/Gleaner/IniReader.h"

namespace qm::siblings {

const com::ObjectMap& GetComponentObjects() noexcept {
  static const com::ObjectMapEntry entries[] = {
      {&CLSID_IniReader, L"Gleaner.IniReader.1", L"Gleaner.IniReader", IDS_COMPONENT_DESCRIPTION,
       &com::CreateComObject<CIniReader>},
  };
  static const com::ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}

}  // namespace qm::siblings
