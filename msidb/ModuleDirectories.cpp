#include "msidb/ModuleDirectories.h"

#include <set>

#include "com/error/ErrorHandler.h"
#include "msidb/View.h"

namespace msidb {

namespace {

std::wstring_view WithoutSuffix(std::wstring_view key) noexcept {
  return key.substr(0, key.find(L'.'));
}

bool IsSystemFolder(std::wstring_view key) noexcept {
  constexpr std::wstring_view ending = L"Folder";
  return key.size() > ending.size() && key.substr(key.size() - ending.size()) == ending;
}

CWideString RootOf(const Database& database, const CWideString& key) {
  std::set<CWideString> visited;
  CWideString current(key);
  Record parameters = Record::Create(1);
  while (visited.insert(current).second) {
    parameters.SetString(1, current);
    View view;
    if (!view.RunAndFetch(database,
                          L"SELECT `Directory_Parent` FROM `Directory` WHERE `Directory` = ?",
                          &parameters)) {
      return {};
    }
    CWideString parent = view.Row().GetString(1);
    if (IsSystemFolder(WithoutSuffix(current)) || parent.empty() || parent == current) {
      break;
    }
    current = std::move(parent);
  }
  return WithoutSuffix(current);
}

TargetDirectory Resolve(const Database& database, const CWideString& key,
                        const DirectoryOptions& options) {
  TargetDirectory directory;
  directory.result = RunAtBoundary(GUID_NULL, [&] {
    directory.path = RequireDirectoryPath(database, key, options);
    directory.root = RootOf(database, key);
    return S_OK;
  });
  if (FAILED(directory.result)) {
    directory.description = com_exception(directory.result).description;
  }
  return directory;
}

}  // namespace

HRESULT ResolveModuleDirectories(const CWideString& module, const DirectoryOptions& options,
                                 TargetDirectories& directories) noexcept {
  return RunAtBoundary(GUID_NULL, [&] {
    const Database database = Database::OpenReadOnly(module);
    for (auto& [key, directory] : directories) {
      directory = Resolve(database, key, options);
    }
    return S_OK;
  });
}

}  // namespace msidb
