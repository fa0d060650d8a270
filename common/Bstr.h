#pragma once

#include <windows.h>

#include <string_view>

#include "common/UniqueHandle.h"

struct BstrTraits {
  using Handle = BSTR;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::SysFreeString(text); }
};

/// The one owner of a BSTR.
using CUniqueBstr = CUniqueHandle<BstrTraits>;

/// A new BSTR for the caller to free; null when memory is short.
[[nodiscard]] inline BSTR AllocBstr(std::wstring_view text) noexcept {
  return ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

/// The text of a BSTR with its embedded zeros; null counts as empty.
inline std::wstring_view ViewOf(BSTR text) noexcept {
  return text ? std::wstring_view(text, ::SysStringLen(text)) : std::wstring_view();
}
