#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "merge/MergeRules.h"

/// A module as far as it matters for what it is merged with. UTF-8.
struct MergeModule {
  std::string key;  ///< "ID:language"
  std::string moduleId;
  long language = 0;
  std::string version;
  std::vector<Requirement> requirements;
};

/// The module that a requirement is satisfied with, or why there is none.
struct Choice {
  std::optional<size_t> module;  ///< its position; none when no module satisfies the requirement
  std::string reason;            ///< "highest of 3 versions", "no module has this ID", ...
};

/// Modules by ID, for finding what satisfies a requirement. Positions are those of the list that it
/// was made of, which must outlive it.
class MergeSet {
 public:
  explicit MergeSet(const std::vector<MergeModule>& modules);

  const std::vector<MergeModule>& Modules() const noexcept { return m_modules; }

  /// Positions of all modules of an ID, in their order; its case makes no difference.
  const std::vector<size_t>& ModulesOfId(const std::string& moduleId) const;

  /// Positions of the modules that a key means, in their order, as the catalog's FindModule takes
  /// it: "ID" and "ID:" mean every language, "ID:1033" one, which is the text of its number. The
  /// first colon divides them; the ID's case makes no difference.
  std::vector<size_t> ModulesOfKey(const std::string& key) const;

  /// The module of the highest version that satisfies a requirement; of equal versions one whose
  /// language is exactly that which is wanted, and then the first.
  Choice Choose(const Requirement& requirement) const;

 private:
  const std::vector<MergeModule>& m_modules;
  std::map<std::string, std::vector<size_t>> m_byId;
};

/// A requirement that no module satisfies.
struct MissingModule {
  size_t neededBy;
  Requirement requirement;
  std::string reason;
};

/// One module of a plan.
struct PlannedModule {
  size_t module;
  std::optional<size_t> neededBy;  ///< the module that asked for it first; none for one asked for
  std::string reason;              ///< why it was chosen
};

/// What has to be merged to merge some modules.
struct MergePlan {
  /// Every module behind all that it needs, as far as there are no cycles.
  std::vector<PlannedModule> modules;
  std::vector<MissingModule> missing;
  /// Modules that need one another: each needs the next, and the last the first.
  std::vector<std::vector<size_t>> cycles;
};

/// The plan for the modules at `wanted` and everything that they need. Depth and number are limited
/// by memory alone.
MergePlan PlanMerge(const MergeSet& set, const std::vector<size_t>& wanted);

/// A module that needs another one.
struct ModuleUser {
  size_t module;
  size_t through;  ///< what it needs itself on the shortest way to that one; or that one
};

/// The modules whose requirements are satisfied with `module`, directly or through others, in the
/// order of the list.
std::vector<ModuleUser> ModulesThatNeed(const MergeSet& set, size_t module);
