#pragma once

#include <windows.h>

#include <optional>

#include "common/FileStamp.h"
#include "common/UniqueFile.h"
#include "common/WideString.h"
#include "image/ByteSource.h"

namespace qm::msidb {

/// Thrown if a module's file cannot be opened or read. ImageDatabase raises it as a failure of the
/// installer function that the reading replaces.
struct FileError {
  UINT code;                 ///< a Win32 error code
  common::WideString cause;  ///< one sentence; empty if the system's text for the code is enough
};

/// The file of a module, open for reading. Others cannot open it for writing meanwhile. If it is
/// already open for writing, opening it here fails with ERROR_SHARING_VIOLATION, as it does in the
/// installer.
class ModuleFile final : public image::ByteSource {
 public:
  /// Opens the file at the full path `path`, of any length. Throws FileError.
  explicit ModuleFile(const common::WideString& path);

  /// Reads a file that the caller opened in that way and keeps open. Moves its file pointer. Throws
  /// FileError.
  explicit ModuleFile(HANDLE file);

  std::uint64_t Size() const noexcept override { return m_size; }

  /// Throws FileError.
  void Read(std::uint64_t offset, void* bytes, std::size_t count) override;

  /// Throws FileError if what was read may come from two versions of the file: a file system shared
  /// with other systems does not lock out their writers. A file that was read by one call has one
  /// version.
  void RequireUnchanged() const;

  /// Identifies the version of the file that is read. Call before Read. Throws FileError.
  common::FileStamp Stamp();

  /// The open file. The caller must not move its file pointer if this object is to read again.
  HANDLE Handle() const noexcept { return m_handle; }

  /// Returns whether the file at `path` exists and has the stamp `stamp`. Does not open it.
  static bool IsCurrent(const common::WideString& path, const common::FileStamp& stamp);

 private:
  ULONGLONG QuerySize() const;
  FILETIME QueryWriteTime() const;
  const FILETIME& RememberWriteTime();

  static constexpr std::uint64_t kUnknownPosition = UINT64_MAX;

  common::UniqueFile m_file;  ///< empty if the caller owns the handle
  HANDLE m_handle;
  std::uint64_t m_size = 0;
  std::optional<FILETIME> m_writeTime;  ///< before the first read; unset if that read everything
  std::uint64_t m_position;             ///< the file pointer; kUnknownPosition if unknown
};

}  // namespace qm::msidb
