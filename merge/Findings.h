#pragma once

#include <functional>
#include <string>
#include <vector>

#include "merge/MergeSet.h"

/// A file that a module delivers: a row of its File table.
struct DeliveredFile {
  std::string name;       ///< long name
  std::string directory;  ///< key of the module's Directory table
  std::string shortName = {};
  std::string key = {};
  std::string version = {};
  std::optional<long> size = {};
};

/// What a check looks at in a module, beside what MergeSet has of it.
struct CheckedModule {
  std::string path;
  std::string failure;  ///< why it cannot be read; empty when it can
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

/// Something that a check found. `code` is one of those below, which stay as they are.
struct Finding {
  std::string code;
  std::vector<std::string> modules;  ///< keys of the modules that it is about, or paths without key
  std::string text;                  ///< a sentence
};

inline constexpr char kMissingDependency[] = "missing-dependency";
inline constexpr char kDependencyCycle[] = "dependency-cycle";
inline constexpr char kExclusion[] = "exclusion";
inline constexpr char kDuplicateKey[] = "duplicate-key";
inline constexpr char kSeveralVersions[] = "several-versions";
inline constexpr char kFileConflict[] = "file-conflict";
inline constexpr char kUnreadableModule[] = "unreadable-module";
inline constexpr char kUnknownModule[] = "unknown-module";
inline constexpr char kNeedsDownload[] = "needs-download";

/// The target path of a directory of a module, by the module's position. Asked for few modules
/// only, because it opens the module.
using ResolveDirectory = std::function<std::string(size_t module, const std::string& directory)>;

/// The modules of the set that an exclusion of the module at `excluding` hits. That one itself is
/// none of them.
std::vector<size_t> ExcludedModules(const MergeSet& set, size_t excluding,
                                    const Exclusion& exclusion);

/// Looks at the modules at the positions of `scope`, with details in `details` by the same
/// positions; what they need may be any module of the set. The answer is in the order of codes,
/// modules and texts.
std::vector<Finding> CheckModules(const MergeSet& set, const std::vector<CheckedModule>& details,
                                  const std::vector<size_t>& scope,
                                  const ResolveDirectory& resolveDirectory);

/// Entries of the index tables that name modules which the set does not have, one finding for each
/// module and table.
std::vector<Finding> CheckIndexes(const MergeSet& set, const std::vector<IndexEntry>& entries);

/// Puts findings in their order.
void Sort(std::vector<Finding>& findings);
