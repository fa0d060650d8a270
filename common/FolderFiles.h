#pragma once

#include <windows.h>

#include "common/Path.h"
#include "common/UniqueHandle.h"

namespace qm::common {

struct FindHandleTraits {
  using Handle = HANDLE;
  static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle find) noexcept { ::FindClose(find); }
};

/// Owns the handle of a file search.
using UniqueFindHandle = UniqueHandle<FindHandleTraits>;

/// While in scope, makes calls on this thread fail instead of prompting the user for a disk.
class ScopedNoDiskPrompts {
 public:
  ScopedNoDiskPrompts() noexcept { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &m_previous); }
  ~ScopedNoDiskPrompts() { ::SetThreadErrorMode(m_previous, nullptr); }
  ScopedNoDiskPrompts(const ScopedNoDiskPrompts&) = delete;
  ScopedNoDiskPrompts& operator=(const ScopedNoDiskPrompts&) = delete;

 private:
  DWORD m_previous = 0;
};

/// Returns whether a file name ends in `extension` (".msm"), ignoring case.
bool HasExtension(std::wstring_view fileName, std::wstring_view extension) noexcept;

/// The outcome of listing the files of a folder.
enum class ListingOutcome {
  Complete,     ///< every file was listed; there may be none
  Missing,      ///< the folder does not exist
  Unavailable,  ///< the files are unknown: the share is offline, access is denied, or the listing
                ///< was interrupted
};

/// Returns the outcome of a listing that ended with `code`, a GetLastError() code.
ListingOutcome ClassifyListing(DWORD code) noexcept;

/// Starts to list `folder` and returns the GetLastError() code, or ERROR_SUCCESS if there is an
/// entry. See ClassifyListing.
DWORD ProbeFolder(const WideString& folder);

/// Returns whether the parent folder lists the file or folder at the full path `path`. True if the
/// parent folder is unavailable.
bool IsListedByParent(const WideString& path);

/// Calls `use` with the WIN32_FIND_DATAW of every file in `folder` whose name ends in `extension`,
/// in the order of the file system.
template <class Use>
ListingOutcome ForEachFile(const WideString& folder, std::wstring_view extension, Use use) {
  const ScopedNoDiskPrompts noPrompts;
  WIN32_FIND_DATAW found;
  const UniqueFindHandle find(
      ::FindFirstFileW((JoinPath(ToExtendedPath(folder), L"*") + extension).c_str(), &found));
  if (!find) {
    return ClassifyListing(::GetLastError());
  }
  do {
    // The pattern also matches files of which only the short name has the extension.
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) &&
        HasExtension(found.cFileName, extension)) {
      use(found);
    }
  } while (::FindNextFileW(find.Get(), &found));
  return ::GetLastError() == ERROR_NO_MORE_FILES ? ListingOutcome::Complete
                                                 : ListingOutcome::Unavailable;
}

}  // namespace qm::common
