#pragma once

#include <vector>

#include "catalog/Repositories.h"
#include "common/WideString.h"

/// When the modules of a folder are listed: those of the repositories come second.
enum class Pass { First, Second };

/// A folder that is searched for modules.
struct SearchFolder {
  CWideString entry;        ///< as it was written in the search path
  CWideString folder;       ///< its full path, see SearchFolderOf
  CWideString displayName;  ///< the folder, or the name of the repository that lists it
  Pass pass;
};

/// Whether two descriptions of one folder can share a source: they have the same pass and the same
/// display name, whatever the spelling of the folder.
bool IsSameSource(const SearchFolder& a, const SearchFolder& b) noexcept;

/// Orders folder paths ignoring case, as the system compares file names.
struct FolderOrder {
  bool operator()(const CWideString& a, const CWideString& b) const noexcept;
};

/// Joins two search paths with a comma. If one is empty, returns the other.
CWideString JoinSearchPaths(const CWideString& first, const CWideString& second);

/// Returns the folders of the search path, then those of the repositories, which are second-pass.
/// Duplicates are kept.
std::vector<SearchFolder> ListSearchFolders(const CWideString& searchPath,
                                            const std::vector<Repository>& repositories);
