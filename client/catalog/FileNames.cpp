#include "client/catalog/FileNames.h"

#include <windows.h>

#include <algorithm>

#include "common/FolderFiles.h"
#include "text/Fold.h"

namespace mmcat {

std::vector<std::wstring> FindFileNames(const qm::common::WideString& pattern) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  const qm::common::UniqueFindHandle search(::FindFirstFileW(pattern.c_str(), &found));
  if (!search) {
    return names;
  }
  do {
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
      names.emplace_back(found.cFileName);
    }
  } while (::FindNextFileW(search.Get(), &found));
  std::sort(names.begin(), names.end(), [](const std::wstring& a, const std::wstring& b) {
    return qm::text::FoldCase(a) < qm::text::FoldCase(b);
  });
  return names;
}

}  // namespace mmcat
