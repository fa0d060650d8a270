#include "common/FolderFiles.h"

#include "text/Fold.h"

namespace qm::common {

namespace {

/// Returns the GetLastError() code of FindFirstFileW, or ERROR_SUCCESS if it found an entry.
DWORD TryToFind(const WideString& pattern) noexcept {
  const ScopedNoDiskPrompts noPrompts;
  WIN32_FIND_DATAW found;
  const UniqueFindHandle find(::FindFirstFileW(pattern.c_str(), &found));
  return find ? ERROR_SUCCESS : ::GetLastError();
}

}  // namespace

bool HasExtension(std::wstring_view fileName, std::wstring_view extension) noexcept {
  return fileName.size() >= extension.size() &&
         text::CompareFolded(fileName.substr(fileName.size() - extension.size()), extension) == 0;
}

ListingOutcome ClassifyListing(DWORD code) noexcept {
  switch (code) {
    case ERROR_SUCCESS:
    case ERROR_FILE_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
      return ListingOutcome::Complete;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:  // the path is that of a file
      return ListingOutcome::Missing;
    default:
      return ListingOutcome::Unavailable;
  }
}

DWORD ProbeFolder(const WideString& folder) {
  return TryToFind(JoinPath(ToExtendedPath(folder), L"*"));
}

bool IsListedByParent(const WideString& path) {
  const DWORD code = TryToFind(ToExtendedPath(path));
  return code == ERROR_SUCCESS || ClassifyListing(code) == ListingOutcome::Unavailable;
}

}  // namespace qm::common
