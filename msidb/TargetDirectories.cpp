#include "msidb/TargetDirectories.h"

#include <set>

#include "com/error/ErrorHandler.h"
#include "common/Path.h"

namespace msidb {

namespace {

std::wstring_view WithoutSuffix(std::wstring_view key) noexcept {
  return key.substr(0, key.find(L'.'));
}

bool IsSystemFolder(std::wstring_view key) noexcept {
  constexpr std::wstring_view ending = L"Folder";
  return key.size() > ending.size() && key.substr(key.size() - ending.size()) == ending;
}

CWideString RootOf(const DirectoryTable& table, const CWideString& key) {
  std::set<CWideString> visited;
  CWideString current(key);
  while (visited.insert(current).second && visited.size() <= kMostDirectories) {
    const DirectoryRow* const row = table.Find(current);
    if (!row) {
      return {};
    }
    if (IsSystemFolder(WithoutSuffix(current)) || row->parent.empty() || row->parent == current) {
      break;
    }
    current = row->parent;
  }
  return WithoutSuffix(current);
}

TargetDirectory Resolve(const DirectoryTable& table, const CWideString& key,
                        const DirectoryOptions& options) {
  TargetDirectory directory;
  directory.result = RunAtBoundary(GUID_NULL, [&] {
    directory.path = RequireDirectoryPath(table, key, options);
    directory.root = RootOf(table, key);
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
    const auto database = ModuleDatabase::Open(FullPath(module));
    const DirectoryTable table(*database);
    for (auto& [key, directory] : directories) {
      directory = Resolve(table, key, options);
    }
    database->RequireUnchanged();
    return S_OK;
  });
}

}  // namespace msidb
