#pragma once

#include <string>

#include "common/UniqueFile.h"
#include "common/WideString.h"

namespace qm::siblings {

/// Opens a file for reading, sharing it for reading, writing and deletion. On failure returns an
/// empty handle and GetLastError has the reason.
common::UniqueFile OpenFile(const common::WideString& path) noexcept;

/// Reads all bytes of a file that was opened from `path`. Raises failures as RaiseLastFileError
/// does. Throws std::bad_alloc if the file has 2 GB or more.
std::string ReadAllBytes(const common::UniqueFile& file, const common::WideString& path);

/// Raises the thread's last-error code as an HRESULT, with a description that begins with the path.
[[noreturn]] void RaiseLastFileError(const common::WideString& path);

}  // namespace qm::siblings
