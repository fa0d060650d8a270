#include "merge/CollidingConditions.h"

#include <algorithm>

#include "merge/Checks.h"
#include "merge/FindingList.h"

namespace qm::merge {

CollidingConditions CompareAll(const std::vector<std::string_view>& texts) {
  CollidingConditions result;
  const size_t count = std::min(texts.size(), FindingList::kMaxModules);
  for (size_t i = 0; i < count; ++i) {
    for (size_t j = i + 1; j < count; ++j) {
      const ConditionRelation relation = CompareConditions(texts[i], texts[j]);
      if (relation == ConditionRelation::Overlapping) {
        return {relation, std::string(texts[i]), std::string(texts[j])};
      }
      if (relation == ConditionRelation::Unknown &&
          result.relation == ConditionRelation::Exclusive) {
        result = {relation, std::string(texts[i]), std::string(texts[j])};
      }
    }
  }
  return result;
}

void AddConditions(const CollidingConditions& conditions, Finding& finding) {
  if (conditions.relation == ConditionRelation::Unknown) {
    finding.text += ", unless the conditions " + QuoteShort(conditions.first) + " and " +
                    QuoteShort(conditions.second) + " never hold together";
    LimitSeverity(finding, Severity::Warning);
  }
}

}  // namespace qm::merge
