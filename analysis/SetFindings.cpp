#include "analysis/SetFindings.h"

#include <memory>

#include "analysis/ModuleItem.h"
#include "analysis/SetFinding.h"

namespace qm::analysis {

void SetFindings::Init(SharedSet set, std::vector<size_t> checked,
                       std::vector<merge::Finding> findings) {
  const auto shared = std::make_shared<const std::vector<merge::Finding>>(std::move(findings));
  SetCollection::Init(std::make_shared<Elements>(
      shared->size(),
      [set, shared](size_t at) -> IDispatch* {
        return com::MakeObject<SetFinding>(set, (*shared)[at]);
      },
      [shared](size_t at) { return (*shared)[at].code; }));
  m_set = std::move(set);
  m_checked = std::move(checked);
}

STDMETHODIMP SetFindings::get_CheckedModules(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_checked); });
}

}  // namespace qm::analysis
