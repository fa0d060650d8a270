#pragma once

#include <map>
#include <optional>

#include "msidb/DirectoryTable.h"

namespace qm::msidb {

/// The brackets around a key that stands for its folder in a path: "[ProgramFilesFolder]".
struct ReferenceBrackets {
  wchar_t open = 0;
  wchar_t close = 0;
};

/// How the path of a directory is built.
struct DirectoryOptions {
  bool useSourcePart = false;      ///< take the part of DefaultDir after ":", not the one before it
  bool useShortName = false;       ///< take the name before "|", not the one after it
  bool stripModuleSuffix = false;  ///< remove the merge module's suffix from keys
  bool resolveDotFolders = false;  ///< look up "." folders below TARGETDIR in the Property table
  /// Written around keys that stand for a folder; without a value such keys are written bare.
  std::optional<ReferenceBrackets> brackets = std::nullopt;
};

/// The options of ResolveAllDirectories.
constexpr DirectoryOptions kTableScanOptions = [] {
  DirectoryOptions options;
  options.stripModuleSuffix = true;
  options.resolveDotFolders = true;
  return options;
}();

/// The maximum number of rows of a walk. Without a limit, resolving every row of one long chain
/// would take time quadratic in the size of the table.
constexpr std::size_t kMaxDirectoryRows = 1000;

/// The maximum length of a path in characters, which is that of the system.
constexpr std::size_t kMaxPathLength = 32767;

/// Paths of directories by Directory key.
using DirectoryPaths = std::map<common::WideString, common::WideString>;

/// Sets `path` to the path of a key of the Directory table. Walks from its row up to a predefined
/// folder, to the root, or to a parent that is missing or already visited. The path is empty if the
/// key has no row.
///
/// Returns ERROR_SUCCESS, or ERROR_MORE_DATA if a name is longer than 259 characters or the walk
/// exceeds kMaxDirectoryRows rows or kMaxPathLength characters; `path` then holds what was built so
/// far. Failures to read a table are raised.
UINT ResolveDirectoryPath(const DirectoryTable& table, const common::WideString& key,
                          common::WideString& path, const DirectoryOptions& options);

/// Returns the path of `key`. Raises an error code of ResolveDirectoryPath as a failure of that
/// call with the argument `key`.
common::WideString ResolveDirectoryPathOrRaise(const DirectoryTable& table,
                                               const common::WideString& key,
                                               const DirectoryOptions& options);

/// Returns the paths of all rows of the Directory table. Raises as ResolveDirectoryPathOrRaise
/// does. Not called by the server.
DirectoryPaths ResolveAllDirectories(const DirectoryTable& table,
                                     const DirectoryOptions& options = kTableScanOptions);

/// Returns whether the table has a row `key` and that is one of the installer's predefined folders,
/// in any case. The 64-bit folders and TARGETDIR are not: their own rows define where they are.
bool PredefinedRootMatch(const DirectoryTable& table, const common::WideString& key);

/// Sets `value` to the value of an installer property. Returns false and leaves `value` alone if
/// the Property table has no such row.
bool LookupProperty(const DirectoryTable& table, const common::WideString& name,
                    common::WideString& value);

}  // namespace qm::msidb
