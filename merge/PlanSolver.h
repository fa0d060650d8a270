#pragma once

#include <cstdint>
#include <limits>
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

  /// What it costs to ask for objections to a plan, in steps of a search for each module of it:
  /// that looks at every row of them.
  static constexpr std::uint64_t kStepsOfCheckedModule = 100;

  /// Returns the best plan with the modules of these numbers. Does not ask for objections again,
  /// and returns a plan that is not proven, once Steps() is `maxSteps`.
  PlanSearch::Result Solve(const Numbers& wanted,
                           std::uint64_t maxSteps = std::numeric_limits<std::uint64_t>::max());

  /// Returns the steps of all searches so far, and what it cost to ask for objections.
  std::uint64_t Steps() const noexcept { return m_steps; }

  /// Returns the sentence of an objection; empty if it was not learned.
  const std::string& FindText(const Numbers& objection) const;

  /// Returns the number of the module of a plan that satisfies a need: its best candidate there.
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
