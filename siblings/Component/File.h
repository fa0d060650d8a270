#pragma once

#include <string>

#include "common/UniqueFile.h"
#include "common/WideString.h"

/// Opens a file for reading, and leaves others every use of it. When it cannot be opened there is
/// no file, and GetLastError tells why.
CUniqueFile OpenFile(const CWideString& path) noexcept;

/// All bytes of a file that was opened by `path`. Raises a failure as RaiseForFile does; a file of
/// 2 GB and more is std::bad_alloc.
std::string ReadBytes(const CUniqueFile& file, const CWideString& path);

/// Raises the thread's last-error code as its HRESULT, with a description that begins with the
/// path.
[[noreturn]] void RaiseForFile(const CWideString& path);
