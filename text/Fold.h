#pragma once

#include <cwchar>
#include <string>
#include <string_view>

namespace qm::text {

/// Returns the lower-case form of a UTF-16 unit. Texts that differ only in case are equal once
/// folded. Folds as CharLowerW does, one unit at a time and in the same way for every language: the
/// dotted capital I, title-case letters and surrogates are left unchanged.
char16_t FoldCase(char16_t unit) noexcept;

/// Folds each unit.
std::u16string FoldCase(std::u16string_view text);

/// Folds UTF-8 text. Ill-formed input becomes U+FFFD, as in ToUtf16.
std::string FoldCase(std::string_view text);

/// Compares texts by their folded units. Returns a value less than, equal to or greater than 0; 0
/// means that they are equal except for case.
int CompareFolded(std::u16string_view a, std::u16string_view b) noexcept;

#if WCHAR_MAX == 0xFFFF
// The same for wchar_t where it holds UTF-16.
wchar_t FoldCase(wchar_t unit) noexcept;
std::wstring FoldCase(std::wstring_view text);
int CompareFolded(std::wstring_view a, std::wstring_view b) noexcept;
#endif

}  // namespace qm::text
