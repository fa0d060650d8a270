#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm::merge {

inline constexpr std::size_t kNoParent = SIZE_MAX;

/// Returns the cycles among rows each of which refers to one other at most: `parents` has the
/// number of that row, or kNoParent. Each cycle is there once, and each of its rows refers to the
/// next one.
std::vector<std::vector<std::size_t>> FindParentCycles(const std::vector<std::size_t>& parents);

}  // namespace qm::merge
