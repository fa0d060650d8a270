#pragma once

#include <vector>

#include "common/ComPtr.h"
#include "common/WideString.h"
#include "idl/siblings.h"

/// A repository of the environment's list, as far as the catalog uses it.
struct Repository {
  CWideString searchPath;  ///< module search folders, separated by commas; may be empty
  CWideString displayName;
};

/// Creates a manager of Corvane8.dll for the repository list below the environment's data folder;
/// null if `dataFolder` is empty. Raises failures as CComponentLoader::Create does, and those that
/// the manager reports.
CComPtr<IRepositoryMgr> OpenRepositoryList(const CWideString& dataFolder);

/// Reads the current list of repositories. Raises failures of the manager, such as a malformed
/// file.
std::vector<Repository> ReadRepositories(IRepositoryMgr& manager);
