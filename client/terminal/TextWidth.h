#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mmcat {

// UTF-8 text in the columns of a terminal. East Asian characters take two columns, marks that
// combine with the character before them take none, and neither do the marks of Style.h.

/// The number of columns that a text takes.
size_t MeasureWidth(std::string_view text) noexcept;

/// The longest beginning of a text that fits into `width` columns.
std::string_view TakeStart(std::string_view text, size_t width) noexcept;

/// The longest end of a text that fits into `width` columns.
std::string_view TakeEnd(std::string_view text, size_t width) noexcept;

/// Shortens a text to `width` columns, which the ellipsis replaces in its middle. The name and
/// language of a module key, the first digits of its GUID, and the file name of a path are what
/// people recognise: these are kept as long as they fit. A text that fits is returned unchanged.
std::string ShortenMiddle(const std::string& text, size_t width, const std::string& ellipsis);

/// Breaks each line that is wider than `width` columns between words, and indents what follows
/// to the text behind the line's first gap of two blanks, or by two columns more than the line. A
/// word that is too wide for a line is broken behind a slash, a dot or a low line.
std::string WrapLines(const std::string& text, size_t width);

}  // namespace mmcat
