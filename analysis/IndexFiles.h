#pragma once

#include <string>
#include <vector>

#include "analysis/LoadFailure.h"
#include "merge/IndexEntry.h"

namespace qm::analysis {

/// The entries of the index files, in file order.
struct IndexContents {
  std::vector<merge::IndexEntry> displayNames;  ///< those that name a module
  std::vector<merge::IndexEntry> files;         ///< those that name the module for a file
};

/// Reads the index files in the folders that the application services return. A missing file has no
/// entries; one that exists and cannot be read is added to `failures`. Raises failures of the
/// application services. Throws std::bad_alloc.
IndexContents ReadIndexFiles(std::vector<LoadFailure>& failures);

}  // namespace qm::analysis
