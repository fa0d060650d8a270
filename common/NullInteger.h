#pragma once

#include <limits>

namespace qm::common {

/// The value of a null integer cell, which the installer returns and objects pass on:
/// MSI_NULL_INTEGER, 0x80000000.
inline constexpr int kNullInteger = std::numeric_limits<int>::min();

}  // namespace qm::common
