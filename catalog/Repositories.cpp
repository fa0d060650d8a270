#include "catalog/Repositories.h"

#include "com/error/Raise.h"
#include "com/loader/ComponentLoader.h"
#include "common/Path.h"

namespace qm::catalog {

namespace {

common::WideString GetProperty(IRepository& repository, const wchar_t* name) {
  common::UniqueBstr value;
  com::RaiseIfFailed(repository.GetProperty(com::AllocateBstr(name).Get(), value.Put()));
  return common::ViewOf(value.Get());
}

}  // namespace

common::ComPtr<IRepositoryMgr> CreateRepositoryManager(const common::WideString& dataFolder) {
  if (dataFolder.empty()) {
    return nullptr;
  }
  const common::WideString path = common::JoinPath(dataFolder, L"Repositories\\Repositories.xml");
  auto manager =
      com::ComponentLoader::Instance().Create<IRepositoryMgr>(L"Corvane8.dll", CLSID_RepositoryMgr);
  com::RaiseIfFailed(manager->put_Path(com::AllocateBstr(path).Get()));
  return manager;
}

std::vector<RepositoryInfo> ListRepositories(IRepositoryMgr& manager) {
  std::vector<RepositoryInfo> found;
  common::ComPtr<IRepositories> repositories;
  com::RaiseIfFailed(manager.GetRepositories(repositories.Put()));
  if (!repositories) {
    return found;
  }
  common::ComPtr<IRepository> repository;
  com::RaiseIfFailed(repositories->MoveFirst(repository.Put()));
  while (repository) {
    found.push_back(
        {GetProperty(*repository, L"MMSearchPath"), GetProperty(*repository, L"DisplayName")});
    com::RaiseIfFailed(repositories->MoveNext(repository.Put()));
  }
  return found;
}

}  // namespace qm::catalog
