#include "catalog/SearchFolders.h"

#include "common/Path.h"
#include "common/SearchPath.h"

namespace qm::catalog {

namespace {

void AppendFolders(const common::WideString& searchPath, const common::WideString& displayName,
                   Pass pass, std::vector<SearchFolder>& folders) {
  for (common::WideString& entry : common::SplitCommaList(searchPath)) {
    common::WideString folder = common::ResolveSearchFolder(entry);
    if (folder.empty()) {
      continue;
    }
    const common::WideString& name = displayName.empty() ? folder : displayName;
    folders.push_back({std::move(entry), folder, name, pass});
  }
}

}  // namespace

bool CanShareSource(const SearchFolder& a, const SearchFolder& b) noexcept {
  const auto isUnnamed = [](const SearchFolder& one) { return one.displayName == one.path; };
  return a.pass == b.pass && (a.displayName == b.displayName || (isUnnamed(a) && isUnnamed(b)));
}

bool FolderLess::operator()(const common::WideString& a,
                            const common::WideString& b) const noexcept {
  return common::CompareFileNames(a, b) < 0;
}

common::WideString JoinSearchPaths(const common::WideString& first,
                                   const common::WideString& second) {
  if (first.empty() || second.empty()) {
    return first.empty() ? second : first;
  }
  return common::WideString::Format(L"%s,%s", first.c_str(), second.c_str());
}

std::vector<SearchFolder> ListSearchFolders(const common::WideString& searchPath,
                                            const std::vector<RepositoryInfo>& repositories) {
  std::vector<SearchFolder> folders;
  AppendFolders(searchPath, common::WideString(), Pass::First, folders);
  for (const RepositoryInfo& repository : repositories) {
    AppendFolders(repository.searchPath, repository.displayName, Pass::Second, folders);
  }
  return folders;
}

}  // namespace qm::catalog
