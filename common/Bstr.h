#pragma once

#include <windows.h>

#include <string_view>

#include "common/UniqueHandle.h"

namespace qm::common {

struct BstrTraits {
  using Handle = BSTR;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::SysFreeString(text); }
};

/// Owns a BSTR.
using UniqueBstr = UniqueHandle<BstrTraits>;

/// Allocates a BSTR, which the caller must free. Returns null if out of memory.
[[nodiscard]] inline BSTR TryAllocateBstr(std::wstring_view text) noexcept {
  return ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

/// Returns a view of the text of a BSTR, embedded zeros included. A null BSTR is empty text.
inline std::wstring_view ViewOf(BSTR text) noexcept {
  return text ? std::wstring_view(text, ::SysStringLen(text)) : std::wstring_view();
}

}  // namespace qm::common
