#pragma once

#include <string>
#include <vector>

#include "client/findings/Baseline.h"

namespace mmcat {

// Both throw std::runtime_error with a text for the user, which names the file.

enum class IfMissing { Throw, Empty };

/// Reads a baseline file. Returns nothing if `file` is an empty text, and with IfMissing::Empty
/// also if the file does not exist or is empty.
std::vector<BaselineEntry> ReadBaseline(const std::string& file, IfMissing ifMissing);

/// Writes a baseline file. A failure leaves an existing one as it is.
void WriteBaseline(const std::string& file, std::vector<BaselineEntry> entries);

}  // namespace mmcat
