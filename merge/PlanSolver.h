#pragma once

#include <map>
#include <string>
#include <vector>

#include "merge/MergePlan.h"
#include "merge/PlanSearch.h"

namespace qm::merge {

/// Finds plans to which there is no objection: asks for objections to the plan that it found,
/// learns them and searches again until no new ones come. Knows everything that it learned in later
/// calls.
class PlanSolver {
 public:
  using Numbers = PlanSearch::Numbers;

  PlanSolver(const ModuleIndex& set, const std::vector<size_t>& wanted, PlanProblem::Extent extent,
             const PlanOptions& options);

  const PlanProblem& Problem() const noexcept { return m_problem; }
  PlanSearch& Search() noexcept { return m_search; }
  const PlanSearch& Search() const noexcept { return m_search; }

  /// Returns the best plan with the modules of these numbers.
  PlanSearch::Result Solve(const Numbers& wanted);

  /// Returns the sentence of an objection; empty if it was not learned.
  const std::string& FindText(const Numbers& objection) const;

  /// Returns the number of the module of a plan that satisfies a need: its best candidate there.
  std::uint32_t FindProvider(const Numbers& plan, std::uint32_t need) const;

 private:
  bool Learn(const Numbers& plan);

  PlanProblem m_problem;
  PlanSearch m_search;
  FindObjections m_findObjections;
  std::map<Numbers, std::string> m_objections;
};

}  // namespace qm::merge
