#include "analysis/MergeSet.h"
#include "com/component/Component.h"

namespace qm::com {

const ObjectMap& GetComponentObjects() noexcept {
  static const ObjectMapEntry entries[] = {
      {&CLSID_MergeSet, L"QmMMUpdater.MergeSet.1", L"QmMMUpdater.MergeSet",
       IDS_COMPONENT_DESCRIPTION, &CreateComObject<analysis::CMergeSet>},
  };
  static const ObjectMap map{entries, std::size(entries), &LIBID_QmMergeSetLib};
  return map;
}

}  // namespace qm::com
