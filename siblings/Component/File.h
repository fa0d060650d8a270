#pragma once

#include <string>

#include "common/UniqueFile.h"
#include "common/WideString.h"

/// Opens a file for reading, sharing it for reading, writing and deletion. On failure returns an
/// empty handle and GetLastError has the reason.
CUniqueFile OpenFile(const CWideString& path) noexcept;

/// Reads all bytes of a file that was opened from `path`. Raises failures as RaiseForFile does.
/// Throws std::bad_alloc if the file has 2 GB or more.
std::string ReadBytes(const CUniqueFile& file, const CWideString& path);

/// Raises the thread's last-error code as an HRESULT, with a description that begins with the path.
[[noreturn]] void RaiseForFile(const CWideString& path);
