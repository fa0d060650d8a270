#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// Replaces each argument "@FILE" by the arguments in that file, and "@-" by those on stdin. The
/// file has one argument on each line, or before each zero byte if it has any; texts are UTF-8.
/// Throws std::runtime_error with a text for the user if it cannot be read.
std::vector<std::string> ExpandResponseFiles(const std::vector<std::string>& arguments);

}  // namespace mmcat
