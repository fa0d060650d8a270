#pragma once

#include <functional>
#include <string>
#include <vector>

#include "merge/MergeSet.h"

namespace qm::merge {

/// A file that a module delivers: a row of its File table.
struct DeliveredFile {
  std::string name;       ///< long name
  std::string directory;  ///< key in the module's Directory table
  std::string shortName = {};
  std::string key = {};
  std::string version = {};
  std::optional<long> size = {};
};

/// What a check needs to know about a module beyond its MergeModule.
struct ModuleDetails {
  std::string path;
  std::string failure;  ///< why it cannot be read; empty if it can
  bool needsDownload = false;
  std::vector<Exclusion> exclusions;
  std::vector<DeliveredFile> files;
};

/// An entry of an index table that names a module.
struct IndexEntry {
  std::string table;  ///< "modules.ini"
  std::string name;   ///< of the entry: a key or a file
  std::string moduleKey;
};

/// A finding of a check. `code` is one of the constants below, whose values never change.
struct Finding {
  std::string code;
  std::vector<std::string> modules;  ///< keys of the modules concerned; a path if one has no ID
  std::string text;                  ///< a sentence
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

/// Returns the target path of a directory of the module at position `module`. Called for few
/// modules only, because it opens the module.
using ResolveDirectory = std::function<std::string(size_t module, const std::string& directory)>;

/// Returns the positions of the modules that an exclusion of the module at `excluding` excludes,
/// except that module itself.
std::vector<size_t> FindExcludedModules(const MergeSet& set, size_t excluding,
                                        const Exclusion& exclusion);

/// Checks the modules at the positions in `scope`. `details` has their details at the same
/// positions as `set`. Any module of the set may satisfy a requirement. The findings are sorted by
/// code, modules and text.
std::vector<Finding> CheckModules(const MergeSet& set, const std::vector<ModuleDetails>& details,
                                  const std::vector<size_t>& scope,
                                  const ResolveDirectory& resolveDirectory);

/// Returns one finding for each module that an index table names but the set does not have. A
/// module that two tables name has two.
std::vector<Finding> CheckIndexes(const MergeSet& set, const std::vector<IndexEntry>& entries);

/// Sorts findings by code, modules and text.
void SortFindings(std::vector<Finding>& findings);

}  // namespace qm::merge
