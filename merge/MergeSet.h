#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "merge/Module.h"

namespace qm::merge {

/// The choice of a module for a requirement, and the reason for it.
struct Choice {
  std::optional<size_t> module;  ///< position; std::nullopt if no module satisfies it
  std::string reason;            ///< "the highest version of 3", "no module has this ID", ...
};

/// An index of modules by ID, which finds the module for a requirement. Positions are those in the
/// list passed to the constructor. The list must outlive the object. Immutable.
class MergeSet {
 public:
  explicit MergeSet(const std::vector<Module>& modules);

  const std::vector<Module>& Modules() const noexcept { return m_modules; }

  /// Returns the positions of all modules with an ID, in ascending order. Ignores the case of the
  /// ID.
  const std::vector<size_t>& FindById(const std::string& moduleId) const;

  /// Returns the positions of the modules that a key means, in ascending order, by the rules of the
  /// catalog's FindModule: "ID" and "ID:" mean every language, "ID:1033" the one language whose
  /// decimal text this is. The first colon separates the two. Ignores the case of the ID.
  ///
  /// Also finds modules whose ID holds colons, by the whole ID or by their own key: there the last
  /// colon separates ID and language.
  std::vector<size_t> FindByKey(const std::string& key) const;

  /// Chooses the module of the highest version that satisfies a requirement. Of equal versions, a
  /// module of exactly the wanted language takes precedence, then the first one. A requirement of
  /// no ID is satisfied by no module, not by one without an ID.
  Choice Choose(const Requirement& requirement) const;

 private:
  void AddByIdAndLanguage(const std::string& moduleId, const std::string& language,
                          std::vector<size_t>& positions) const;

  const std::vector<Module>& m_modules;
  std::map<std::string, std::vector<size_t>> m_byId;
};

/// Returns whether a requirement of a module is met by the modules that were merged into it, or,
/// for a row of one of those, by the module itself. Such a requirement needs no module of the set.
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
  /// Modules that need one another: each needs the next, and the last needs the first.
  std::vector<std::vector<size_t>> cycles;
};

/// Plans the merge of the modules at `wanted` and of everything that they need, also for modules
/// that they carry: merging copies the requirements of those too. Only memory limits the number of
/// modules and the depth of their requirements.
MergePlan PlanMerge(const MergeSet& set, const std::vector<size_t>& wanted);

/// A module that needs another one.
struct ModuleUser {
  size_t module;
  size_t through;  ///< what it needs directly on the shortest path to the other one
};

/// Returns the modules whose requirements `module` satisfies, directly or through others, in
/// ascending order.
std::vector<ModuleUser> FindUsers(const MergeSet& set, size_t module);

}  // namespace qm::merge
