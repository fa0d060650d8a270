#pragma once

#include <windows.h>

namespace qm::common {

/// Identifies the version of a file: writing to the file changes its size or its last-write time,
/// which may move in either direction. All 0 for a file that does not exist.
struct FileStamp {
  ULONGLONG size = 0;  ///< in bytes
  FILETIME lastWrite{};

  /// Makes the stamp of a file from WIN32_FIND_DATAW or WIN32_FILE_ATTRIBUTE_DATA.
  template <class Found>
  static FileStamp From(const Found& found) noexcept {
    return {ULONGLONG{found.nFileSizeHigh} << 32U | found.nFileSizeLow, found.ftLastWriteTime};
  }
};

inline bool operator==(const FileStamp& a, const FileStamp& b) noexcept {
  return ::CompareFileTime(&a.lastWrite, &b.lastWrite) == 0 && a.size == b.size;
}

inline bool operator!=(const FileStamp& a, const FileStamp& b) noexcept { return !(a == b); }

}  // namespace qm::common
