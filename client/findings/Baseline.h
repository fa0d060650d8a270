#pragma once

#include <string>
#include <vector>

#include "client/findings/FindingIdentity.h"

namespace mmcat {

/// Findings that are known and accepted.
struct BaselineEntry {
  FindingIdentity identity;
  int count = 1;       ///< how many findings of this identity
  std::string reason;  ///< why they are accepted, for readers of the file
};

/// Parses a baseline file. Entries of equal identity become one. Throws std::runtime_error, with a
/// text for the user, if the file is not a baseline, is of another version, or is truncated or
/// damaged.
std::vector<BaselineEntry> ParseBaseline(const std::string& text);

/// Formats a baseline file, sorted, so that a comparison of two versions shows what changed.
std::string FormatBaseline(std::vector<BaselineEntry> entries);

/// An entry as JSON, as in a baseline file.
Json MakeBaselineEntryJson(const BaselineEntry& entry);

}  // namespace mmcat
