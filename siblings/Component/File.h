#pragma once

#include <windows.h>

#include <string>

#include "common/UniqueHandle.h"
#include "common/WideString.h"

struct FileTraits {
  using Handle = HANDLE;
  static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle file) noexcept { ::CloseHandle(file); }
};

/// The one owner of an open file.
using CUniqueFile = CUniqueHandle<FileTraits>;

/// Opens a file for reading, and leaves others every use of it. When it cannot be opened there is
/// no file, and GetLastError tells why.
CUniqueFile OpenFile(const CWideString& path) noexcept;

/// All bytes of a file that was opened by `path`. Raises a failure as RaiseForFile does; a file of
/// 2 GB and more is std::bad_alloc.
std::string ReadBytes(const CUniqueFile& file, const CWideString& path);

/// Raises the thread's last-error code as its HRESULT, with a description that begins with the
/// path.
[[noreturn]] void RaiseForFile(const CWideString& path);
