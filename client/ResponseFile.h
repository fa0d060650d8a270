#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// Replaces each argument "@FILE" by the arguments in that file, and "@-" by those on stdin. The
/// file has one argument on each non-empty line or, if it contains zero bytes, arguments separated
/// by these. Texts are UTF-8. What follows "--" is taken as it is. Throws std::runtime_error with a
/// text for the user if a file cannot be read or has more than 64 MB.
std::vector<std::string> ExpandResponseFiles(const std::vector<std::string>& arguments);

}  // namespace mmcat
