#pragma once

#include "analysis/LoadProgress.h"
#include "analysis/SetData.h"

namespace qm::analysis {

/// Reads the modules of `source`, a collection or a catalog, in their order, then the indexes and
/// the gallery of the machine.
///
/// A module whose properties or file cannot be read is part of the set, with its Module::failure.
/// Raises E_NOINTERFACE if `source` is something else, failures of the source itself and of
/// `progress`, and E_UNEXPECTED if a collection breaks its contract. Throws std::bad_alloc.
SharedSet LoadSet(IDispatch& source, const std::shared_ptr<LoadProgress>& progress);

}  // namespace qm::analysis
