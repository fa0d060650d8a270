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
  std::vector<LoadFailure> failures;            ///< of files that exist
};

/// Reads the index files in the folders that the application services return. A missing file has no
/// entries. Raises failures of the application services. Throws std::bad_alloc.
IndexContents ReadIndexFiles();

}  // namespace qm::analysis
