#pragma once

#include <string>
#include <vector>

#include "analysis/LoadFailure.h"
#include "merge/IndexEntry.h"

namespace qm::analysis {

/// The entries of the index files, in file order.
struct IndexContents {
  std::vector<merge::IndexEntry> displayNames;  ///< those with the display name of a module
  std::vector<merge::IndexEntry> files;         ///< those that name the module delivering a file
};

/// Reads the index files in the folders that the application services return. A missing file has no
/// entries. One that exists but cannot be read is added to `failures`. Raises failures of the
/// application services. Throws std::bad_alloc.
IndexContents ReadIndexFiles(std::vector<LoadFailure>& failures);

}  // namespace qm::analysis
