#pragma once

#include <string_view>

namespace qm::merge {

/// How two conditions of the installer relate, as far as their texts show it.
enum class ConditionRelation {
  Overlapping,  ///< both can hold: they are the same, or one is empty
  Exclusive,    ///< never hold together: X and NOT X, VersionNT and Version9X
  Unknown
};

/// Compares two conditions. Understands operands and comparisons that are joined by AND and may be
/// negated. Of other conditions, it recognizes only that two are equal or that one negates the
/// other as a whole. Ignores the case of operators and the amount of white space.
ConditionRelation CompareConditions(std::string_view a, std::string_view b);

}  // namespace qm::merge
