#pragma once

#include <map>
#include <optional>

#include "msidb/DirectoryTable.h"

namespace msidb {

/// What surrounds a key that stands in a path for the folder that it names: "[ProgramFilesFolder]".
struct ReferenceBrackets {
  wchar_t open = 0;
  wchar_t close = 0;
};

/// What a directory's path is made of.
struct DirectoryOptions {
  bool useSourcePart = false;  ///< the part of DefaultDir behind ":" instead of the one before it
  bool useShortName = false;   ///< the part before "|" instead of the one behind it
  bool stripModuleSuffix = false;  ///< keys without a merge module's suffix
  bool resolveDotFolders = false;  ///< "." names below TARGETDIR through the Property table
  /// Those of the predefined folder at the root; its key alone without them.
  std::optional<ReferenceBrackets> brackets = std::nullopt;
};

/// The options for looking at all of a table's rows.
constexpr DirectoryOptions kTableScan{false, false, true, true};

/// The most rows that a walk takes. Without a limit, the paths of all rows of one
/// long chain would take the square of the table's size.
constexpr std::size_t kMostDirectories = 1000;

/// The system has no longer path, in characters.
constexpr std::size_t kLongestPath = 32767;

/// Paths of directories by their keys of the Directory table.
using DirectoryPaths = std::map<CWideString, CWideString>;

/// The path of a key of the Directory table: a walk from its row up to a predefined folder, to the
/// root or to a parent that is missing or was visited already. A key without a row gives an empty
/// path.
///
/// Returns ERROR_SUCCESS, or ERROR_MORE_DATA for a name that is longer than the 259 characters of a
/// path or for more than kMostDirectories rows or kLongestPath characters; `path` then holds what
/// was built so far. Failures to read a table are raised.
UINT ResolveDirectoryPath(const DirectoryTable& table, const CWideString& key, CWideString& path,
                          const DirectoryOptions& options);

/// The path of `key`; a code that ResolveDirectoryPath returns is raised under that name, with
/// `key`.
CWideString RequireDirectoryPath(const DirectoryTable& table, const CWideString& key,
                                 const DirectoryOptions& options);

/// The paths of all rows of the Directory table. No caller in the server. Raises as
/// RequireDirectoryPath does.
DirectoryPaths ResolveAllDirectories(const DirectoryTable& table,
                                     const DirectoryOptions& options = kTableScan);

/// Whether the row `key` is there and is one of the installer's predefined folders, whatever its
/// case. The 64-bit folders and TARGETDIR do not count here: their own rows say where they lie.
bool PredefinedRootMatch(const DirectoryTable& table, const CWideString& key);

/// The value of an installer property; false, and `value` untouched, when there is no such row.
bool LookupProperty(const DirectoryTable& table, const CWideString& name, CWideString& value);

}  // namespace msidb
