#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// Prints a remark that the catalog has no module with `key`, and suggests the nearest of `keys`,
/// which are those of the catalog.
void PrintUnknownKey(const std::vector<std::string>& keys, const std::string& key);

}  // namespace mmcat
