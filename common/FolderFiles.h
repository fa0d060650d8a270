#pragma once

#include <windows.h>

#include "common/Path.h"
#include "common/UniqueHandle.h"

struct FindHandleTraits {
  using Handle = HANDLE;
  static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle find) noexcept { ::FindClose(find); }
};

/// The one owner of an open file search.
using CUniqueFindHandle = CUniqueHandle<FindHandleTraits>;

/// Has the system answer with an error where it would ask the user for a disk, in this thread and
/// for the life of the object.
class CNoDiskPrompts {
 public:
  CNoDiskPrompts() noexcept { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &m_previous); }
  ~CNoDiskPrompts() { ::SetThreadErrorMode(m_previous, nullptr); }
  CNoDiskPrompts(const CNoDiskPrompts&) = delete;
  CNoDiskPrompts& operator=(const CNoDiskPrompts&) = delete;

 private:
  DWORD m_previous = 0;
};

/// Whether a file name ends in `extension` (".msm"), without regard to case.
bool HasExtension(std::wstring_view fileName, std::wstring_view extension) noexcept;

/// What is known of a folder's files after they were listed.
enum class FolderListing {
  Complete,     ///< all of them; there may be none
  Missing,      ///< there is no such folder
  Unavailable,  ///< nothing for sure: the folder cannot be listed, as when its share is away or
                ///< access is denied, or the listing broke off
};

/// The listing that ended with the code `code` of GetLastError.
FolderListing ListingThatEndedWith(DWORD code) noexcept;

/// Begins to list `folder` and returns the code of GetLastError, ERROR_SUCCESS if the folder has
/// files or folders. See ListingThatEndedWith.
DWORD TryToList(const CWideString& folder);

/// Whether the folder of the file or folder at the full path `path` lists it. True if the folder is
/// unavailable.
bool IsListed(const CWideString& path);

/// Calls `use` with the WIN32_FIND_DATAW of every file of `folder` whose name ends in `extension`,
/// in the order in which the file system lists them.
template <class Use>
FolderListing ForEachFile(const CWideString& folder, std::wstring_view extension, Use use) {
  const CNoDiskPrompts noPrompts;
  WIN32_FIND_DATAW found;
  const CUniqueFindHandle find(
      ::FindFirstFileW((JoinPath(LongPath(folder), L"*") + extension).c_str(), &found));
  if (!find) {
    return ListingThatEndedWith(::GetLastError());
  }
  do {
    // The pattern also finds files whose short name alone has the extension.
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) &&
        HasExtension(found.cFileName, extension)) {
      use(found);
    }
  } while (::FindNextFileW(find.Get(), &found));
  return ::GetLastError() == ERROR_NO_MORE_FILES ? FolderListing::Complete
                                                 : FolderListing::Unavailable;
}
