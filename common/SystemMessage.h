#pragma once

#include <windows.h>

#include "common/UniqueHandle.h"

namespace qm::common {

struct LocalTextTraits {
  using Handle = wchar_t*;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::LocalFree(text); }
};

/// Owns text that the system allocated with LocalAlloc.
using UniqueLocalText = UniqueHandle<LocalTextTraits>;

/// Returns the system's message for a Win32 error code or an HRESULT, in the user's language. Null
/// if the system has no message for it.
UniqueLocalText FormatSystemMessage(DWORD code) noexcept;

}  // namespace qm::common
