#pragma once

#include <cwchar>
#include <string>
#include <string_view>

namespace qm::text {

/// Converts UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

/// Converts UTF-8 to UTF-16. Ill-formed input becomes U+FFFD, one for each maximal subpart of a
/// character: "F0 9F 41" becomes U+FFFD and "A". Each byte of an overlong form or of an encoded
/// surrogate becomes a U+FFFD of its own.
std::u16string ToUtf16(std::string_view text);

#if WCHAR_MAX == 0xFFFF
// The same for wchar_t where it holds UTF-16.
std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);
#endif

}  // namespace qm::text
