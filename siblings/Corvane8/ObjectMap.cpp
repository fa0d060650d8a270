#include "com/component/Component.h"
#include "siblings/Corvane8/RepositoryMgr.h"

namespace qm::com {

const ObjectMap& GetComponentObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_RepositoryMgr, L"Corvane8.RepositoryMgr.1", L"Corvane8.RepositoryMgr",
       IDS_COMPONENT_DESCRIPTION, &CreateComObject<siblings::CRepositoryMgr>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QmSiblingsLib};
  return map;
}

}  // namespace qm::com
