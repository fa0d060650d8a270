#pragma once

#include <windows.h>

#include "common/FileStamp.h"
#include "common/UniqueFile.h"
#include "common/WideString.h"
#include "image/ByteSource.h"

namespace msidb {

/// Thrown when a module's file cannot be opened or read. Whoever knows which call the reading
/// stands for reports it under that call's name.
struct FileFailure {
  UINT code;          ///< a Win32 error code
  CWideString cause;  ///< one sentence; empty for the system's text for the code
};

/// The file of a module, open for reading. Nobody can write to it meanwhile; that somebody already
/// does is ERROR_SHARING_VIOLATION, as it is when the installer opens a database for reading.
class ModuleFile final : public qm::image::ByteSource {
 public:
  /// Opens the file at the full path `path`, of any length. Throws FileFailure.
  explicit ModuleFile(const CWideString& path);

  std::uint64_t Size() const noexcept override { return m_stamp.size; }

  /// Throws FileFailure.
  void Read(std::uint64_t offset, void* bytes, std::size_t count) override;

  /// Throws FileFailure if the file was written since it was opened: file systems that are shared
  /// with other systems do not keep their writers out.
  void RequireUnchanged() const;

  /// The version that was opened.
  const FileStamp& OpenedStamp() const noexcept { return m_stamp; }

  /// Whether the file at `path` is there in the version `stamp`. Does not open it.
  static bool IsCurrent(const CWideString& path, const FileStamp& stamp);

 private:
  FileStamp GetStamp() const;

  static constexpr std::uint64_t kNowhere = UINT64_MAX;

  CUniqueFile m_file;
  FileStamp m_stamp;
  std::uint64_t m_position = 0;  ///< where the file stands, or kNowhere
};

}  // namespace msidb
