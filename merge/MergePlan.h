#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "merge/ModuleIndex.h"

namespace qm::merge {

/// Returns whether a requirement of a module is met by the module itself or by those that were
/// merged into it. Such a requirement needs no module of the set.
bool IsMetWithin(const Module& module, const Requirement& requirement);

/// Modules that must not be merged together, or one that must not be merged at all.
struct Objection {
  std::vector<size_t> modules;  ///< positions
  std::string text;             ///< a sentence that says why
};

/// Returns the objections to merging the modules at `plan`. Each should name as few modules as
/// possible. Missing modules and exclusions are known without it.
using FindObjections = std::function<std::vector<Objection>(const std::vector<size_t>& plan)>;

/// Limits of a search for a plan: how many candidates of requirements it examines (about a second's
/// work), and how often it asks for objections. Most sets need far less. If the first choice for
/// each requirement will do, a search takes at most six steps for each candidate and for each
/// requirement of a candidate.
inline constexpr std::uint64_t kMaxPlanSteps = 5'000'000;
inline constexpr int kMaxPlanRounds = 100;

struct PlanOptions {
  FindObjections findObjections = nullptr;
  std::uint64_t maxSteps = kMaxPlanSteps;
};

/// A requirement that no module satisfies.
struct MissingModule {
  size_t neededBy;
  Requirement requirement;
  std::string reason;
};

/// A module of a plan.
struct PlannedModule {
  size_t module;
  std::optional<size_t> neededBy;  ///< first module that needs it; std::nullopt for a wanted one
  std::string reason;              ///< why it was chosen
  /// The modules outside the plan that satisfy everything that it needs this one for, best first.
  std::vector<size_t> alternatives = {};
  /// The modules of the plan that satisfy its requirements, in the order of these, each once.
  std::vector<size_t> needs = {};
};

/// The result of planning a merge.
struct MergePlan {
  /// Every module follows all that it needs, except within cycles.
  std::vector<PlannedModule> modules;
  std::vector<MissingModule> missing;
  /// Modules that need one another: each needs the next, and the last needs the first. No cycle is
  /// added once they have 100,000 modules in total: if everything needs everything, there are too
  /// many to list.
  std::vector<std::vector<size_t>> cycles;
  /// Set if no plan is better. Not set if the search reached its limit first.
  bool isProven = true;
};

/// Plans the merge of the modules at `wanted` and of everything that they need. This includes the
/// requirements of modules that they carry, because merging copies those too. Only memory limits
/// the number of modules and the depth of their requirements.
///
/// The plan contains all of `wanted` and is the best of the plans that do. Each of these goals
/// outweighs all later ones:
///
/// 1. the fewest requirements that no module of the set satisfies,
/// 2. the fewest objections: exclusions within the plan, what `findObjections` returns, and modules
///    whose only candidates are of a wrong platform,
/// 3. the fewest modules in addition to the first of each ID,
/// 4. the fewest modules that are planned only because they carry what is needed: no wanted module
///    leads to them by requirements of their own IDs,
/// 5. modules of the platform of those that need them,
/// 6. modules in the language of those that need them, then neutral ones; a neutral module needs
///    modules in the language that all wanted modules that have one share,
/// 7. the highest versions: each module costs the number of higher versions of its ID in the set,
/// 8. the fewest modules,
/// 9. the first of equal modules in the set, and modules of the needed ID rather than carriers.
///
/// A module of the plan that carries a needed one satisfies the requirement, whatever platform and
/// language it has, unless a module of the needed ID is planned too.
///
/// `findObjections` is called only if there is a choice, and again for each plan that its results
/// lead to.
MergePlan PlanMerge(const ModuleIndex& set, const std::vector<size_t>& wanted,
                    const PlanOptions& options = {});

}  // namespace qm::merge
