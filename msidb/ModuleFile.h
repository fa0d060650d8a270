#pragma once

#include <windows.h>

#include "common/FileStamp.h"
#include "common/UniqueFile.h"
#include "common/WideString.h"
#include "image/ByteSource.h"

namespace msidb {

/// Thrown if a module's file cannot be opened or read. ImageDatabase raises it as a failure of the
/// installer function that the reading replaces.
struct FileFailure {
  UINT code;          ///< a Win32 error code
  CWideString cause;  ///< one sentence; empty if the system's text for the code is enough
};

/// The file of a module, open for reading. Nobody can open it for writing meanwhile. If somebody
/// has it open for writing already, opening fails with ERROR_SHARING_VIOLATION, as the installer's
/// does.
class ModuleFile final : public qm::image::ByteSource {
 public:
  /// Opens the file at the full path `path`, of any length. Throws FileFailure.
  explicit ModuleFile(const CWideString& path);

  std::uint64_t Size() const noexcept override { return m_stamp.size; }

  /// Throws FileFailure.
  void Read(std::uint64_t offset, void* bytes, std::size_t count) override;

  /// Throws FileFailure if the file was written since it was opened: a file system shared with
  /// other systems does not lock out their writers.
  void RequireUnchanged() const;

  /// Identifies the version of the file that was opened.
  const FileStamp& OpenedStamp() const noexcept { return m_stamp; }

  /// Whether the file at `path` exists and has the stamp `stamp`. Does not open it.
  static bool IsCurrent(const CWideString& path, const FileStamp& stamp);

 private:
  FileStamp GetStamp() const;

  static constexpr std::uint64_t kNowhere = UINT64_MAX;

  CUniqueFile m_file;
  FileStamp m_stamp;
  std::uint64_t m_position = 0;  ///< the file pointer; kNowhere if unknown
};

}  // namespace msidb
