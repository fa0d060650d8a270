#pragma once

#include <vector>

#include "catalog/Repositories.h"
#include "common/WideString.h"

/// A folder in which modules are searched for.
struct SearchFolder {
  CWideString entry;        ///< as it was written in the search path
  CWideString folder;       ///< the one that the entry names, see SearchFolderOf
  CWideString displayName;  ///< the folder, or the name of the repository that lists it
  bool secondPass;          ///< whether its modules come after those of all first-pass folders
};

/// Whether two descriptions of a folder, in whatever spelling, ask for one source: its modules are
/// listed in the same pass and under the same name.
bool IsSameSource(const SearchFolder& a, const SearchFolder& b) noexcept;

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
