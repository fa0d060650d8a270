#pragma once

#include <limits>

/// What the installer's tables, and the numbers that objects make of them, have for a cell without
/// a value: MSI_NULL_INTEGER, 0x80000000.
inline constexpr int kNullInteger = std::numeric_limits<int>::min();
