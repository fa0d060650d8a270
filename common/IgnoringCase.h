#pragma once

#include <string_view>

// For the keys of collections and for queries, whose comparison is that of _wcsicmp by contract.
// Other texts are compared by CompareFolded (text/Fold.h), paths and file names by CompareFileNames
// (common/Path.h).

/// Compares texts up to their terminating zeros as _wcsicmp does in the "C" locale, but several
/// times as fast for the letters that names mostly have: less than, equal to or greater than 0.
int CompareIgnoringCase(const wchar_t* a, const wchar_t* b) noexcept;

/// Whether texts, with their embedded zeros, are equal without regard to case.
bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept;
