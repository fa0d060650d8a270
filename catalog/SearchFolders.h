#pragma once

#include <vector>

#include "catalog/Repositories.h"
#include "common/WideString.h"

/// A folder in which modules are searched for.
struct SearchFolder {
  CWideString entry;        ///< as it was written in the search path
  CWideString folder;       ///< full path with its environment variables filled in, see FolderText
  CWideString displayName;  ///< the folder, or the name of the repository that lists it
  bool secondPass;          ///< whether its modules come after those of all first-pass folders
};

inline bool operator==(const SearchFolder& a, const SearchFolder& b) noexcept {
  return a.entry == b.entry && a.folder == b.folder && a.displayName == b.displayName &&
         a.secondPass == b.secondPass;
}

/// The text under which a folder is known: its full path, without a backslash at its end unless it
/// is a root.
CWideString FolderText(const CWideString& entry);

/// Orders folder texts without regard to case.
struct FolderOrder {
  bool operator()(const CWideString& a, const CWideString& b) const noexcept;
};

/// first and second with "," between them; only one when the other is empty.
CWideString JoinSearchPaths(const CWideString& first, const CWideString& second);

/// The folders of the search path, then those of the repositories, which are second-pass. A folder
/// that is named again is listed again.
std::vector<SearchFolder> ListSearchFolders(const CWideString& searchPath,
                                            const std::vector<Repository>& repositories);
