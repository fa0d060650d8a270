#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "merge/Conditions.h"
#include "merge/Findings.h"

namespace qm::merge {

/// The relation between the conditions of things that collide if they are installed together.
struct CollidingConditions {
  ConditionRelation relation = ConditionRelation::Exclusive;
  std::string first, second;  ///< two that may both hold
};

/// Compares each pair of the first FindingList::kMaxModules conditions: Exclusive if no pair can
/// hold together, Overlapping if a pair surely can.
CollidingConditions CompareAll(const std::vector<std::string_view>& texts);

/// Makes a finding a warning that quotes the conditions if it is not known whether both can hold.
void AddConditions(const CollidingConditions& conditions, Finding& finding);

}  // namespace qm::merge
