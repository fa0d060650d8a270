#pragma once

#include <windows.h>

#include "common/UniqueHandle.h"

namespace qm::common {

struct RegistryKeyTraits {
  using Handle = HKEY;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle key) noexcept { ::RegCloseKey(key); }
};

/// Owns an open registry key.
using UniqueRegistryKey = UniqueHandle<RegistryKeyTraits>;

}  // namespace qm::common
