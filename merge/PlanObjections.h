#pragma once

#include <vector>

#include "merge/Findings.h"
#include "merge/MergePlan.h"

namespace qm::merge {

/// Returns what a check objects to if the modules at `plan`, in ascending order, were merged: the
/// modules of its errors. Missing modules are left out: a plan knows them itself.
std::vector<Objection> FindCheckObjections(const ModuleIndex& set, const std::vector<size_t>& plan,
                                           CheckOptions options);

}  // namespace qm::merge
