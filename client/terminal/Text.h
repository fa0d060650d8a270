#pragma once

#include <string>

namespace mmcat {

/// Text with each control character, which a terminal might interpret, replaced by a blank.
std::string MakePrintable(std::string text);

/// A word as an argument that can be typed, in quotes if it has a blank or a wildcard.
std::string QuoteArgument(const std::string& word);

}  // namespace mmcat
