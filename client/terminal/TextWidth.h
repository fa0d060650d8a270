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

/// Shortens the GUIDs of the module IDs in a text so that it fits `width` columns. Keeps at least
/// three digits of each, so the result may be wider.
std::string ShortenIds(const std::string& text, size_t width, const std::string& ellipsis);

/// Shortens a text to `width` columns by putting the ellipsis before its last `end` columns. A text
/// that fits is returned unchanged.
std::string ShortenBefore(const std::string& text, size_t end, size_t width,
                          const std::string& ellipsis);

/// Shortens a text to `width` columns in its middle. The first digits of a GUID and everything
/// around it, and the file name of a path, are what people recognise: these are kept as long as
/// they fit. A text that fits is returned unchanged.
std::string ShortenMiddle(const std::string& text, size_t width, const std::string& ellipsis);

}  // namespace mmcat
