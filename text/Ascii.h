#pragma once

#include <cstdint>
#include <string_view>

namespace qm::text {

/// Returns whether all bytes of a text are below 0x80.
bool IsAscii(std::string_view bytes) noexcept;

/// Returns whether bytes below 0x80 are the characters of ASCII in this code page; 0 is the code
/// page of the system. True for the code pages of nearly all modules, whose keys and names are
/// mostly ASCII: such texts need no conversion to UTF-8.
bool IsAsciiSuperset(std::uint32_t codePage) noexcept;

}  // namespace qm::text
