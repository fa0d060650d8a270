#include "merge/PlanObjections.h"

#include <utility>

namespace qm::merge {

std::vector<Objection> FindCheckObjections(const ModuleIndex& set, const std::vector<size_t>& plan,
                                           CheckOptions options) {
  options.checkedAs = CheckedAs::Merge;
  std::vector<Objection> objections;
  for (Finding& finding : CheckModules(set, plan, options)) {
    if (finding.severity == Severity::Error && finding.code != kMissingDependency) {
      std::vector<size_t> modules = std::move(finding.positions);
      if (finding.code == kDuplicateModuleKey) {  // the finding names one module for all
        for (const FindingValue& value : finding.values) {
          modules.push_back(*value.module);
        }
      }
      objections.push_back({std::move(modules), std::move(finding.text)});
    }
  }
  return objections;
}

}  // namespace qm::merge
