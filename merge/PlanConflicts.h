#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "merge/MergePlan.h"

namespace qm::merge {

/// A change after which a conflict does not arise. It was planned again before it is reported.
struct PlanFix {
  std::string text;             ///< "without A:1033 the rest can be merged"
  std::vector<size_t> drop;     ///< wanted modules to do without; empty if a module must be added
  std::vector<size_t> modules;  ///< of the plan with this change, in the order of the set
};

/// Why some of the wanted modules cannot be merged without an objection, whatever else is chosen.
struct PlanConflict {
  std::string text;             ///< a sentence
  std::vector<size_t> wanted;   ///< wanted modules that lead to it; without one of them it is gone
  std::vector<size_t> modules;  ///< that object to one another, or the one that lacks another one
  /// For each of these modules the shortest chain of requirements from a wanted module to it: each
  /// needs the next one. One module for a wanted one.
  std::vector<std::vector<size_t>> chains;
  std::vector<PlanFix> fixes;
  /// Set if no plan with `wanted` is without an objection, and one is without any of them. Not set
  /// if the search ended at its bound before it knew.
  bool isMinimal = true;
};

/// Bounds of a search for conflicts. After so many conflicts it ends. After so many plans, or steps
/// for them (PlanSolver::Steps), it returns what it has, one conflict at least: `wanted` may then
/// have more modules than necessary, and fixes may be absent.
inline constexpr size_t kMaxPlanConflicts = 25;
inline constexpr size_t kMaxConflictPlans = 300;
inline constexpr std::uint64_t kMaxConflictSteps = 4 * kMaxPlanSteps;

/// Finds what prevents a merge of the modules at `wanted` to which nobody objects, and what would
/// change that. Conflicts are independent: each is found with what the ones before it object to
/// being permitted. Returns nothing if there is a plan without missing modules and objections.
std::vector<PlanConflict> FindPlanConflicts(const ModuleIndex& set,
                                            const std::vector<size_t>& wanted,
                                            const PlanOptions& options = {});

}  // namespace qm::merge
