#pragma once

#include <optional>
#include <vector>

#include "merge/Module.h"

namespace qm::merge {

/// Finds out whether a module can exist that satisfies some requirements and that some exclusions
/// do not exclude. All of them, at least one requirement, must be for the same ID. Returns such a
/// module with the lowest version of at most four parts below 65,536, or std::nullopt. May miss one
/// if more than 16 languages come into question.
std::optional<ModuleSignature> FindPossibleModule(
    const std::vector<const Requirement*>& requirements, std::vector<const Exclusion*> exclusions);

}  // namespace qm::merge
