#pragma once

#include <string>
#include <vector>

#include "client/terminal/Report.h"

namespace mmcat {

/// Formats rows as CSV (RFC 4180) in UTF-8, below a header row with the names of the columns. A row
/// is a JSON object: a member that is missing or null is an empty cell, and a flag "true" or
/// "false". The members for the columns must not be lists or objects.
std::string FormatCsv(const std::vector<std::string>& columns, const Json& rows);

}  // namespace mmcat
