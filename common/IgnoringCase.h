#pragma once

#include <string_view>

namespace qm::common {

// For collection keys and queries, which by contract compare as _wcsicmp does. CompareFolded
// (text/Fold.h) compares other texts, CompareFileNames (common/Path.h) paths and file names.

/// Compares null-terminated texts as _wcsicmp does in the "C" locale, but several times as fast for
/// the letters that names mostly contain. Returns a value less than, equal to or greater than 0.
int CompareIgnoringCase(const wchar_t* a, const wchar_t* b) noexcept;

/// Returns whether two texts, embedded zeros included, are equal ignoring case.
bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept;

}  // namespace qm::common
