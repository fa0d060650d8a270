#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm::merge {

inline constexpr std::size_t kNoParent = SIZE_MAX;

/// Returns the cycles among rows that refer to at most one other row each. `parents` has the number
/// of that row, or kNoParent. Each cycle is returned once. Each of its rows refers to the next one,
/// and the last to the first.
std::vector<std::vector<std::size_t>> FindParentCycles(const std::vector<std::size_t>& parents);

}  // namespace qm::merge
