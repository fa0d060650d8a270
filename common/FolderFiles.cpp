#include "common/FolderFiles.h"

#include "text/Fold.h"

namespace {

/// Returns the GetLastError() code of FindFirstFileW, or ERROR_SUCCESS if it found an entry.
DWORD TryToFind(const CWideString& pattern) noexcept {
  const CNoDiskPrompts noPrompts;
  WIN32_FIND_DATAW found;
  const CUniqueFindHandle find(::FindFirstFileW(pattern.c_str(), &found));
  return find ? ERROR_SUCCESS : ::GetLastError();
}

}  // namespace

bool HasExtension(std::wstring_view fileName, std::wstring_view extension) noexcept {
  return fileName.size() >= extension.size() &&
         qm::text::CompareFolded(fileName.substr(fileName.size() - extension.size()), extension) ==
             0;
}

FolderListing ListingThatEndedWith(DWORD code) noexcept {
  switch (code) {
    case ERROR_SUCCESS:
    case ERROR_FILE_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
      return FolderListing::Complete;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:  // the path is that of a file
      return FolderListing::Missing;
    default:
      return FolderListing::Unavailable;
  }
}

DWORD TryToList(const CWideString& folder) { return TryToFind(JoinPath(LongPath(folder), L"*")); }

bool IsListed(const CWideString& path) {
  const DWORD code = TryToFind(LongPath(path));
  return code == ERROR_SUCCESS || ListingThatEndedWith(code) == FolderListing::Unavailable;
}
