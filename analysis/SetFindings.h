#pragma once

#include <vector>

#include "analysis/SetCollection.h"
#include "merge/Findings.h"

namespace qm::analysis {

/// The result of a check.
class SetFindings : public SetCollection<ISetFindings, ISetFinding> {
 public:
  /// `checked` are the positions of the modules that were checked.
  void Init(SharedSet set, std::vector<size_t> checked, std::vector<merge::Finding> findings);

  STDMETHOD(get_CheckedModules)(ISetModules** value) override;

 private:
  SharedSet m_set;
  std::vector<size_t> m_checked;
};

}  // namespace qm::analysis
