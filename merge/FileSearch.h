#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/IndexEntry.h"
#include "merge/ModuleIndex.h"

namespace qm::merge {

bool HasWildcard(std::string_view pattern) noexcept;

/// Returns whether a UTF-8 name matches a pattern, in which `*` matches any number of characters
/// and `?` exactly one. Case-sensitive.
bool MatchesPattern(std::string_view name, std::string_view pattern) noexcept;

struct FoundFile {
  size_t module;  ///< position in the list
  const DeliveredFile* file;
};

/// Returns the files whose long or short name matches a pattern, ignoring case. Sorted by module,
/// then by name and key.
std::vector<FoundFile> FindFiles(const std::vector<Module>& modules, std::string_view pattern);

/// What is wrong with the index entries that name a module for a file.
enum class IndexFault {
  None,
  AbsentModule,  ///< no module of the set has the key
  NotDelivered   ///< modules have the key, but none of their File tables has the file
};

/// A module that delivers a file, by its File table, by an index table, or by both.
struct Deliverer {
  std::string file;              ///< long name; from the index if no File table has the file
  std::optional<size_t> module;  ///< position; std::nullopt if no module of the set has the key
  std::string moduleKey;         ///< that of the module; from the index if the module is absent
  /// The rows of its File table, sorted by key: one module may install a file several times.
  std::vector<const DeliveredFile*> copies;
  std::vector<const IndexEntry*> entries;  ///< those that name the module for this file
  IndexFault fault = IndexFault::None;
};

/// Returns every module that delivers a file whose long or short name matches a pattern, ignoring
/// case: one for each pair of file and module, present or not. `entries` are those of the index
/// tables of files; ModuleIndex::FindByKey finds the modules that they name. A module whose file is
/// absent or could not be read completely is never NotDelivered. Sorted by file; then modules of
/// the set by position, then absent ones by key.
///
/// The results point into the modules of `set` and to `entries`, which must outlive them.
std::vector<Deliverer> FindDeliverers(const ModuleIndex& set,
                                      const std::vector<IndexEntry>& entries,
                                      std::string_view pattern);

}  // namespace qm::merge
