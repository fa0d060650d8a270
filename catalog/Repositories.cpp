#include "catalog/Repositories.h"

#include "com/error/Raise.h"
#include "com/loader/ComponentLoader.h"
#include "common/Path.h"

namespace {

CWideString GetProperty(IRepository& repository, const wchar_t* name) {
  CUniqueBstr value;
  RaiseIfFailed(repository.GetProperty(MakeBstr(name).Get(), value.Put()));
  return ViewOf(value.Get());
}

}  // namespace

CComPtr<IRepositoryMgr> OpenRepositoryList(const CWideString& dataFolder) {
  if (dataFolder.empty()) {
    return nullptr;
  }
  const CWideString path = JoinPath(dataFolder, L"Repositories\\Repositories.xml");
  auto manager =
      CComponentLoader::Instance().Create<IRepositoryMgr>(L"Corvane8.dll", CLSID_RepositoryMgr);
  RaiseIfFailed(manager->put_Path(MakeBstr(path).Get()));
  return manager;
}

std::vector<Repository> ReadRepositories(IRepositoryMgr& manager) {
  std::vector<Repository> found;
  CComPtr<IRepositories> repositories;
  RaiseIfFailed(manager.GetRepositories(repositories.Put()));
  if (!repositories) {
    return found;
  }
  CComPtr<IRepository> repository;
  RaiseIfFailed(repositories->MoveFirst(repository.Put()));
  while (repository) {
    found.push_back(
        {GetProperty(*repository, L"MMSearchPath"), GetProperty(*repository, L"DisplayName")});
    RaiseIfFailed(repositories->MoveNext(repository.Put()));
  }
  return found;
}
