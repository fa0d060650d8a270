#pragma once

#include <cstddef>
#include <string>

namespace mmcat {

/// Breaks each line that is wider than `width` columns between words, and indents what follows to
/// the text after the line's first gap of two blanks, or by two columns more than the line. A word
/// that is too wide for a line is broken, if possible after a slash, a backslash, a dot or an
/// underscore.
std::string WrapLines(const std::string& text, size_t width);

}  // namespace mmcat
