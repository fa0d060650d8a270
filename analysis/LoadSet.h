#pragma once

#include "analysis/SetData.h"

namespace qm::analysis {

/// Reads the modules of a collection, in its order, then the indexes and the gallery of the
/// machine.
///
/// A module whose properties or file cannot be read is part of the set, with its Module::failure.
/// Raises failures of the collection itself, and E_UNEXPECTED if it breaks its contract. Throws
/// std::bad_alloc.
SharedSet LoadSet(IMergeModules& collection);

}  // namespace qm::analysis
