#pragma once

#include <string>
#include <vector>

/// Of some names those that somebody who wrote `wanted` may have meant, three at most, the nearest
/// first: names of which it is a part or the beginning, in any letter case, or from which it
/// differs in few letters. Module keys are compared without the GUID and the language as well.
std::vector<std::string> NearestNames(const std::string& wanted,
                                      const std::vector<std::string>& names);
