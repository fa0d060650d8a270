#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/IndexEntry.h"
#include "merge/MergePlan.h"

namespace qm::merge {

/// A finding of a check. `code` is one of the constants below, whose values never change.
struct Finding {
  std::string code;
  std::vector<std::string> modules;    ///< keys of the modules concerned; a path if one has no ID
  std::string text;                    ///< a sentence
  std::vector<size_t> positions = {};  ///< of those modules that the set has
};

inline constexpr char kMissingDependency[] = "missing-dependency";
inline constexpr char kDependencyCycle[] = "dependency-cycle";
inline constexpr char kExclusion[] = "exclusion";
inline constexpr char kDuplicateModuleKey[] = "duplicate-key";
inline constexpr char kSeveralVersions[] = "several-versions";
inline constexpr char kFileConflict[] = "file-conflict";
inline constexpr char kUnreadableModule[] = "unreadable-module";
inline constexpr char kUnknownModule[] = "unknown-module";
inline constexpr char kNeedsDownload[] = "needs-download";
inline constexpr char kChangedModule[] = "changed-module";
inline constexpr char kUnreadableIndex[] = "unreadable-index";

/// Returns the target path of a directory of the module at position `module`; empty if nothing is
/// known about it.
using ResolveDirectory = std::function<std::string(size_t module, std::string_view directory)>;

/// Returns the positions of the modules that an exclusion of the module at `excluding` excludes,
/// except that module itself. An exclusion of no ID excludes none.
std::vector<size_t> FindExcludedModules(const ModuleIndex& set, size_t excluding,
                                        const Exclusion& exclusion);

/// Checks the modules at the positions in `scope`. Any module of the set may satisfy a requirement.
/// Requirements and exclusions of carried modules count, and the finding names the carried one. The
/// findings are sorted by code, modules and text.
///
/// `resolveDirectory` is called for few modules only; without it, the modules' own tables say where
/// files go.
std::vector<Finding> CheckModules(const ModuleIndex& set, const std::vector<size_t>& scope,
                                  const ResolveDirectory& resolveDirectory = nullptr);

/// Returns one finding for each module that an index table names but the set does not have. A
/// module that two tables name has two.
std::vector<Finding> CheckIndexes(const ModuleIndex& set, const std::vector<IndexEntry>& entries);

/// Sorts findings by code, modules and text.
void SortFindings(std::vector<Finding>& findings);

}  // namespace qm::merge
