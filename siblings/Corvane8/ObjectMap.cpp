#include "siblings/Component/Component.h"
#include "siblings/Corvane8/RepositoryMgr.h"

namespace qm::siblings {

const com::ObjectMap& GetComponentObjects() noexcept {
  static const com::ObjectMapEntry entries[] = {
      {&CLSID_RepositoryMgr, L"Corvane8.RepositoryMgr.1", L"Corvane8.RepositoryMgr",
       IDS_COMPONENT_DESCRIPTION, &com::CreateComObject<CRepositoryMgr>},
  };
  static const com::ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}

}  // namespace qm::siblings
