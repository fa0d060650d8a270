#pragma once

#include <string>
#include <vector>

namespace mmcat {

/// Text with each control character, which a terminal might interpret, replaced by a blank.
std::string MakePrintable(std::string text);

/// A word as an argument that can be typed, in quotes if it has a blank or a wildcard.
std::string QuoteArgument(const std::string& word);

/// Joins items by commas. Of many more than `most`, only the first ones: "A, B and 12 more".
std::string JoinSome(const std::vector<std::string>& items, size_t most);

/// The same for items of which one is meant: "A, B or C", "A, B or 12 others".
std::string JoinAlternatives(const std::vector<std::string>& items, size_t most);

}  // namespace mmcat
