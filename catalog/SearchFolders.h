#pragma once

#include <vector>

#include "catalog/Repositories.h"
#include "common/WideString.h"

namespace qm::catalog {

/// When the modules of a folder are listed: those of repositories come in the second pass, after
/// those of all other folders.
enum class Pass { First, Second };

/// A folder that is searched for modules.
struct SearchFolder {
  common::WideString entry;        ///< as it was written in the search path
  common::WideString path;         ///< its full path, see ResolveSearchFolder
  common::WideString displayName;  ///< the folder, or the name of the repository that lists it
  Pass pass;
};

/// Returns whether two descriptions of one folder can share a source: they have the same pass and
/// the same display name, whatever the spelling of the folder.
bool CanShareSource(const SearchFolder& a, const SearchFolder& b) noexcept;

/// Orders folder paths ignoring case, as the system compares file names.
struct FolderLess {
  bool operator()(const common::WideString& a, const common::WideString& b) const noexcept;
};

/// Joins two search paths with a comma. If one is empty, returns the other.
common::WideString JoinSearchPaths(const common::WideString& first,
                                   const common::WideString& second);

/// Returns the folders of the search path, then those of the repositories, which are second-pass.
/// Duplicates are kept.
std::vector<SearchFolder> ListSearchFolders(const common::WideString& searchPath,
                                            const std::vector<RepositoryInfo>& repositories);

}  // namespace qm::catalog
