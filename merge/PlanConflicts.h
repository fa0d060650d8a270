#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "merge/MergePlan.h"

namespace qm::merge {

/// A change that resolves a conflict, verified by planning again.
struct PlanFix {
  std::string text;          ///< "without A:1033 the rest can be merged"
  std::vector<size_t> drop;  ///< wanted modules to leave out; empty if a module must be added
  /// Modules of the plan with this change, in the order of the set; without the added one. Neutral
  /// modules still need others in the language that all wanted modules share, including dropped
  /// ones.
  std::vector<size_t> modules;
};

/// Why no choice of other modules lets some of the wanted modules be merged without an objection.
struct PlanConflict {
  std::string text;  ///< a sentence
  /// Wanted modules that cause it; leaving out any of them resolves it.
  std::vector<size_t> wanted;
  /// Those that must not be merged together, or the one whose requirement is missing.
  std::vector<size_t> modules;
  /// For each of these modules the shortest chain of requirements from a wanted module to it: each
  /// needs the next one. For a wanted module, the chain is that module alone. Then one for each
  /// other module of `wanted`: to the nearest one that keeps these from being replaced by others of
  /// their IDs, or that module alone if none is found.
  std::vector<std::vector<size_t>> chains;
  std::vector<PlanFix> fixes;
  /// Set if no plan for `wanted` avoids the conflict, but leaving out any of them does. Not set if
  /// the search reached its limit before this was known.
  bool isMinimal = true;
};

/// Limits of a search for conflicts. It ends after this many conflicts. After this many plans, or
/// this many steps for them (PlanSolver::Steps), it returns what it has, but at least one conflict:
/// its `wanted` may then have more modules than necessary, and fixes may be absent.
inline constexpr size_t kMaxPlanConflicts = 25;
inline constexpr size_t kMaxConflictPlans = 300;
inline constexpr std::uint64_t kMaxConflictSteps = 4 * kMaxPlanSteps;

/// Finds what prevents merging the modules at `wanted` without an objection, and what would resolve
/// it. Conflicts are independent: the search for each one permits what the earlier ones object to.
/// Returns an empty list if there is a plan without missing modules and objections.
std::vector<PlanConflict> FindPlanConflicts(const ModuleIndex& set,
                                            const std::vector<size_t>& wanted,
                                            const PlanOptions& options = {});

}  // namespace qm::merge
