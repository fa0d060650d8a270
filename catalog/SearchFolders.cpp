#include "catalog/SearchFolders.h"

#include "common/Path.h"
#include "common/SearchPath.h"

namespace {

void Append(const CWideString& searchPath, const CWideString& displayName, bool secondPass,
            std::vector<SearchFolder>& folders) {
  for (CWideString& entry : SplitCommaList(searchPath)) {
    CWideString folder = FolderText(entry);
    if (folder.empty()) {
      continue;  // it would stand for the current folder
    }
    const CWideString& name = displayName.empty() ? folder : displayName;
    folders.push_back({std::move(entry), folder, name, secondPass});
  }
}

}  // namespace

CWideString FolderText(const CWideString& entry) {
  CWideString full = FullPath(ExpandEnvironmentText(entry));
  const std::wstring_view text(full);
  const bool isDriveRoot = text.size() == 3 && text[1] == L':';
  if (text.size() > 1 && text.back() == L'\\' && !isDriveRoot) {
    return text.substr(0, text.size() - 1);
  }
  return full;
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
  Append(searchPath, CWideString(), false, folders);
  for (const Repository& repository : repositories) {
    Append(repository.searchPath, repository.displayName, true, folders);
  }
  return folders;
}
