#pragma once

#include <windows.h>

#include "common/UniqueHandle.h"

struct LocalTextTraits {
  using Handle = wchar_t*;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::LocalFree(text); }
};

/// Text that the system allocated with LocalAlloc.
using CUniqueLocalText = CUniqueHandle<LocalTextTraits>;

/// The system's text for a Win32 error code or an HRESULT, in the user's language; none when the
/// system has no text for it.
CUniqueLocalText FormatSystemText(DWORD code) noexcept;
