#pragma once

#include <windows.h>
// These headers require windows.h to be included first.
#include <msi.h>
#include <msiquery.h>

#include "common/UniqueHandle.h"

namespace qm::msidb {

struct MsiHandleTraits {
  using Handle = MSIHANDLE;
  static constexpr Handle None() noexcept { return 0; }
  static void Close(Handle handle) noexcept { ::MsiCloseHandle(handle); }
};

/// Sole owner of an installer handle: a database, view, record or summary information.
using MsiHandle = common::UniqueHandle<MsiHandleTraits>;

}  // namespace qm::msidb
