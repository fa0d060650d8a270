#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

#include "com/error/com_exception.h"

namespace qm::analysis {

/// A file that MergeSet.Load could not read, or not completely.
struct LoadFailure {
  std::string path;  ///< of the file; the key of a module without a file
  std::string text;  ///< one sentence
  HRESULT code = E_FAIL;
  std::optional<size_t> module = {};  ///< position; std::nullopt for an index file
};

/// Returns the description of a failure to read a file as one line without the file's path.
std::string DescribeFailure(const com_exception& failure, const std::string& path);

}  // namespace qm::analysis
