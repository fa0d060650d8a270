#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

namespace qm::analysis {

/// A file that MergeSet.Load could not read, or not completely.
struct LoadFailure {
  std::string path;  ///< of the file; the key of a module without a file
  std::string text;  ///< one sentence
  HRESULT code = E_FAIL;
  std::optional<size_t> module = {};  ///< position; std::nullopt for an index file
};

}  // namespace qm::analysis
