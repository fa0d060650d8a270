#pragma once

#include <windows.h>
// After windows.h, on which they depend.
#include <msi.h>
#include <msiquery.h>

#include "common/UniqueHandle.h"

struct MsiHandleTraits {
  using Handle = MSIHANDLE;
  static constexpr Handle None() noexcept { return 0; }
  static void Close(Handle handle) noexcept { ::MsiCloseHandle(handle); }
};

/// The one owner of an installer handle: database, view, record or summary information.
using CMsiHandle = CUniqueHandle<MsiHandleTraits>;
