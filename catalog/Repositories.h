#pragma once

#include <vector>

#include "common/ComPtr.h"
#include "common/WideString.h"
#include "idl/siblings.h"

/// What the catalog takes from a repository of the environment's list.
struct Repository {
  CWideString searchPath;  ///< further module search folders, divided by commas; may be empty
  CWideString displayName;
};

/// A manager of Corvane8.dll for the repository list below the environment's data folder; none when
/// that folder is empty. Failures are raised as CComponentLoader::Create raises them, or as the
/// manager itself tells them.
CComPtr<IRepositoryMgr> OpenRepositoryList(const CWideString& dataFolder);

/// The repositories as the list has them now. Raises failures of the manager, such as a malformed
/// file.
std::vector<Repository> ReadRepositories(IRepositoryMgr& manager);
