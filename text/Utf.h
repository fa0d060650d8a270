#pragma once

#include <cwchar>
#include <string>
#include <string_view>

namespace qm::text {

/// UTF-8 of UTF-16 text. A surrogate without its partner becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

/// UTF-16 of UTF-8 text. Ill-formed input becomes U+FFFD, one for each longest beginning of a
/// character: "F0 9F 41" is U+FFFD and "A". Overlong forms and surrogates are ill-formed from their
/// second byte on.
std::u16string ToUtf16(std::string_view text);

#if WCHAR_MAX == 0xFFFF
// The same on systems whose wide characters are UTF-16.
std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);
#endif

}  // namespace qm::text
