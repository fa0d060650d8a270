#pragma once

#include <windows.h>

#include "common/UniqueHandle.h"

namespace qm::common {

struct FileTraits {
  using Handle = HANDLE;
  static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle file) noexcept { ::CloseHandle(file); }
};

/// Owns the handle of an open file.
using UniqueFile = UniqueHandle<FileTraits>;

}  // namespace qm::common
