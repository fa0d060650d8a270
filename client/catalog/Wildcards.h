#pragma once

#include <string>

namespace mmcat {

// Patterns in UTF-8, in which * stands for any characters and ? for one. Case is ignored.

bool HasWildcard(const std::string& pattern) noexcept;

/// Returns whether a whole text matches a pattern.
bool MatchesPattern(const std::string& pattern, const std::string& text);

}  // namespace mmcat
