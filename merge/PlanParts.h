#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "merge/PlanState.h"

namespace qm::merge {

/// Divides what remains of a problem into parts.
class PlanParts {
 public:
  using Numbers = PlanState::Numbers;

  /// Needs that share no module, ID or objection with others.
  struct Part {
    Numbers open;     ///< needs of selected modules that no selected module satisfies
    Numbers modules;  ///< that an answer can contain
    Numbers key;      ///< what the answer depends on; empty if it must not be remembered
    PlanCost bound;   ///< every answer costs at least this
    std::map<std::uint32_t, PlanCost> bounds;  ///< by ID: its share of `bound`
  };

  /// `state` must outlive the object.
  explicit PlanParts(PlanState& state);

  /// Divides open needs and all that they may bring in into parts that do not affect one another.
  std::vector<Part> Split(const Numbers& open);

 private:
  static constexpr std::uint32_t kNone = PlanState::kNone;

  Numbers MakeKey(const Part& part) const;
  void FillBound(Part& part);

  PlanState& m_state;
  Numbers m_moduleGroup;  ///< scratch of Split, kNone between calls
  Numbers m_needGroup;
  Numbers m_idGroup;
};

}  // namespace qm::merge
