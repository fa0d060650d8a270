#include "catalog/SearchFolders.h"

#include "common/Path.h"
#include "common/SearchPath.h"

namespace {

void Append(const CWideString& searchPath, const CWideString& displayName, Pass pass,
            std::vector<SearchFolder>& folders) {
  for (CWideString& entry : SplitCommaList(searchPath)) {
    CWideString folder = SearchFolderOf(entry);
    if (folder.empty()) {
      continue;
    }
    const CWideString& name = displayName.empty() ? folder : displayName;
    folders.push_back({std::move(entry), folder, name, pass});
  }
}

}  // namespace

bool IsSameSource(const SearchFolder& a, const SearchFolder& b) noexcept {
  const auto isUnnamed = [](const SearchFolder& one) { return one.displayName == one.folder; };
  return a.pass == b.pass && (a.displayName == b.displayName || (isUnnamed(a) && isUnnamed(b)));
}

bool FolderOrder::operator()(const CWideString& a, const CWideString& b) const noexcept {
  return CompareFileNames(a, b) < 0;
}

CWideString JoinSearchPaths(const CWideString& first, const CWideString& second) {
  if (first.empty() || second.empty()) {
    return first.empty() ? second : first;
  }
  return CWideString::Format(L"%s,%s", first.c_str(), second.c_str());
}

std::vector<SearchFolder> ListSearchFolders(const CWideString& searchPath,
                                            const std::vector<Repository>& repositories) {
  std::vector<SearchFolder> folders;
  Append(searchPath, CWideString(), Pass::First, folders);
  for (const Repository& repository : repositories) {
    Append(repository.searchPath, repository.displayName, Pass::Second, folders);
  }
  return folders;
}
