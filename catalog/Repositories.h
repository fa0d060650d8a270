#pragma once

#include <vector>

#include "common/ComPtr.h"
#include "common/WideString.h"
#include "idl/siblings.h"

namespace qm::catalog {

/// A repository of the environment's list, as far as the catalog uses it.
struct RepositoryInfo {
  common::WideString searchPath;  ///< module search folders, separated by commas; may be empty
  common::WideString displayName;
};

/// Creates a manager of Corvane8.dll for the repository list below the environment's data folder;
/// null if `dataFolder` is empty. Raises failures as ComponentLoader::Create does, and those that
/// the manager reports.
common::ComPtr<IRepositoryMgr> CreateRepositoryManager(const common::WideString& dataFolder);

/// Reads the current list of repositories. Raises failures of the manager, such as a malformed
/// file.
std::vector<RepositoryInfo> ListRepositories(IRepositoryMgr& manager);

}  // namespace qm::catalog
