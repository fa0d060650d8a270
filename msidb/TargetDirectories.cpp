#include "msidb/TargetDirectories.h"

#include <set>

#include "com/error/ErrorHandler.h"
#include "common/Path.h"

namespace qm::msidb {

namespace {

std::wstring_view RemoveKeySuffix(std::wstring_view key) noexcept {
  return key.substr(0, key.find(L'.'));
}

bool IsSystemFolder(std::wstring_view key) noexcept {
  constexpr std::wstring_view ending = L"Folder";
  return key.size() > ending.size() && key.substr(key.size() - ending.size()) == ending;
}

common::WideString FindRootKey(const DirectoryTable& table, const common::WideString& key) {
  std::set<common::WideString> visited;
  common::WideString current(key);
  while (visited.insert(current).second && visited.size() <= kMaxDirectoryRows) {
    const DirectoryRow* const row = table.Find(current);
    if (!row) {
      return {};
    }
    if (IsSystemFolder(RemoveKeySuffix(current)) || row->parent.empty() || row->parent == current) {
      break;
    }
    current = row->parent;
  }
  return RemoveKeySuffix(current);
}

TargetDirectory ResolveTargetDirectory(const DirectoryTable& table, const common::WideString& key,
                                       const DirectoryOptions& options) {
  TargetDirectory directory;
  directory.result = com::RunAtBoundary(GUID_NULL, [&] {
    directory.path = ResolveDirectoryPathOrRaise(table, key, options);
    directory.root = FindRootKey(table, key);
    return S_OK;
  });
  if (FAILED(directory.result)) {
    directory.description = com_exception(directory.result).description;
  }
  return directory;
}

}  // namespace

HRESULT ResolveTargetDirectories(const common::WideString& module, const DirectoryOptions& options,
                                 TargetDirectoryMap& directories) noexcept {
  return com::RunAtBoundary(GUID_NULL, [&] {
    const auto database = ModuleDatabase::Open(common::ResolveFullPath(module));
    const DirectoryTable table(*database);
    for (auto& [key, directory] : directories) {
      directory = ResolveTargetDirectory(table, key, options);
    }
    database->RequireUnchanged();
    return S_OK;
  });
}

}  // namespace qm::msidb
