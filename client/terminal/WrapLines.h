#pragma once

#include <cstddef>
#include <string>

namespace mmcat {

/// Breaks each line that is wider than `width` columns between words, and indents what follows
/// to the text after the line's first gap of two blanks, or by two columns more than the line. A
/// word that is too wide for a line is broken after a slash, a dot or a low line.
std::string WrapLines(const std::string& text, size_t width);

}  // namespace mmcat
