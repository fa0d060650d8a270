#pragma once

#include <windows.h>

/// Identifies the version of a file: a file that was written since has another size or another
/// last-write time, earlier or later. All 0 for a file that is not there.
struct FileStamp {
  ULONGLONG size = 0;  ///< in bytes
  FILETIME lastWrite{};

  /// Of what the system found in a folder or under a path: WIN32_FIND_DATAW or
  /// WIN32_FILE_ATTRIBUTE_DATA.
  template <class Found>
  static FileStamp Of(const Found& found) noexcept {
    return {ULONGLONG{found.nFileSizeHigh} << 32U | found.nFileSizeLow, found.ftLastWriteTime};
  }
};

inline bool operator==(const FileStamp& a, const FileStamp& b) noexcept {
  return ::CompareFileTime(&a.lastWrite, &b.lastWrite) == 0 && a.size == b.size;
}

inline bool operator!=(const FileStamp& a, const FileStamp& b) noexcept { return !(a == b); }
