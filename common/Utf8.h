#pragma once

#include <string>
#include <string_view>

#include "common/WideString.h"

/// UTF-8 of UTF-16 text; what is no valid UTF-16 becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// UTF-16 of UTF-8 text.
CWideString ToWide(std::string_view text);
