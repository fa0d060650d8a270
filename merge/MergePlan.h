#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "merge/ModuleIndex.h"

namespace qm::merge {

/// Returns whether a requirement of a module is met by the module itself or by those that were
/// merged into it. Such a requirement needs no module of the set.
bool IsMetWithin(const Module& module, const Requirement& requirement);

/// A requirement that no module satisfies.
struct MissingModule {
  size_t neededBy;
  Requirement requirement;
  std::string reason;
};

/// A module of a plan.
struct PlannedModule {
  size_t module;
  std::optional<size_t> neededBy;  ///< module that needed it first; std::nullopt if the caller did
  std::string reason;              ///< why it was chosen
};

/// The result of planning a merge.
struct MergePlan {
  /// Every module follows all that it needs, except within cycles.
  std::vector<PlannedModule> modules;
  std::vector<MissingModule> missing;
  /// Modules that need one another: each needs the next, and the last needs the first. Ends after
  /// 100,000 modules in all: where everything needs everything, the cycles are without number.
  std::vector<std::vector<size_t>> cycles;
};

/// Plans the merge of the modules at `wanted` and of everything that they need, also for modules
/// that they carry: merging copies the requirements of those too. Only memory limits the number of
/// modules and the depth of their requirements.
MergePlan PlanMerge(const ModuleIndex& set, const std::vector<size_t>& wanted);

/// A module that needs one of others.
struct ModuleUser {
  size_t module;
  size_t through;  ///< what it needs directly on the shortest path to the nearest of them
};

/// Returns the modules that need one of the modules at `targets`, directly or through others, in
/// ascending order and without the targets.
std::vector<ModuleUser> FindUsers(const ModuleIndex& set, const std::vector<size_t>& targets);

}  // namespace qm::merge
