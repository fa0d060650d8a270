#pragma once

#include <string_view>

/// Compares texts up to their terminating zeros as _wcsicmp does in the "C" locale, but several
/// times as fast for the letters that names mostly have: less than, equal to or greater than 0.
int CompareIgnoringCase(const wchar_t* a, const wchar_t* b) noexcept;

/// Whether texts, with their embedded zeros, are equal without regard to case.
bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept;
