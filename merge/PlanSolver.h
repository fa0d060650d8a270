#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "merge/MergePlan.h"
#include "merge/PlanSearch.h"

namespace qm::merge {

/// Finds plans without objections: asks for objections to the plan that it found, learns them, and
/// searches again until there are no new ones. Later calls use what was learned.
class PlanSolver {
 public:
  using Numbers = PlanSearch::Numbers;

  PlanSolver(const ModuleIndex& set, const std::vector<size_t>& wanted, PlanProblem::Extent extent,
             const PlanOptions& options);

  const PlanProblem& Problem() const noexcept { return m_problem; }
  PlanSearch& Search() noexcept { return m_search; }
  const PlanSearch& Search() const noexcept { return m_search; }

  /// The cost of asking for objections to a plan, in search steps for each of its modules. It is
  /// high because a check looks at every row.
  static constexpr std::uint64_t kStepsOfCheckedModule = 100;

  /// Returns the best plan with the modules of these numbers. If there are new objections when
  /// Steps() has reached `maxSteps`, returns the last plan, not proven, instead of searching again.
  PlanSearch::Result Solve(const Numbers& wanted,
                           std::uint64_t maxSteps = std::numeric_limits<std::uint64_t>::max());

  /// Returns the steps of all searches so far, including the cost of asking for objections.
  std::uint64_t Steps() const noexcept { return m_steps; }

  /// Returns the sentence of an objection; empty if it was not learned.
  const std::string& FindText(const Numbers& objection) const;

  /// Returns the number of the module that satisfies a need in a plan, its best candidate there;
  /// PlanProblem::kNone if the plan has none.
  std::uint32_t FindProvider(const Numbers& plan, std::uint32_t need) const;

 private:
  PlanSearch::Result Search(const Numbers& wanted);
  bool Learn(const Numbers& plan);

  PlanProblem m_problem;
  PlanSearch m_search;
  FindObjections m_findObjections;
  std::map<Numbers, std::string> m_objections;
  std::uint64_t m_steps = 0;
};

}  // namespace qm::merge
