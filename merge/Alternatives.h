#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "merge/Checks.h"

namespace qm::merge {

/// What a module has of something that modules may share, such as the values of a row.
struct ModuleVariant {
  std::size_t module;
  std::uint64_t variant;  ///< a hash that is equal where modules agree
};

/// Returns which of the elements are compared. In a merge, all are. In a catalog, those of one
/// module for each ID: of the alternatives, the one whose variants are shared by the most IDs. So
/// if a choice of alternatives agrees, that is the choice.
std::vector<bool> ChooseAlternatives(const CheckedModules& modules,
                                     const std::vector<ModuleVariant>& all);

}  // namespace qm::merge
