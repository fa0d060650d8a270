#pragma once

#include <vector>

#include "merge/Findings.h"
#include "merge/MergePlan.h"

namespace qm::merge {

/// Checks the modules at `plan`, in ascending order, as a merge. Returns objections for its errors
/// except missing modules, which the plan itself lists.
std::vector<Objection> FindCheckObjections(const ModuleIndex& set, const std::vector<size_t>& plan,
                                           CheckOptions options);

}  // namespace qm::merge
