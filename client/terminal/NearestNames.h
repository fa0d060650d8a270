#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// Up to three names the user may have meant by `wanted`, best match first: names that contain it
/// or differ from it in few letters, ignoring case. Module keys are also compared without their
/// GUID and language.
std::vector<std::string> FindNearestNames(const std::string& wanted,
                                          const std::vector<std::string>& names);

}  // namespace mmcat
