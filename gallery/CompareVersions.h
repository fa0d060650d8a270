#pragma once

#include "common/WideString.h"

/// Compares dotted versions of up to four parts: 1 when `a` is greater, -1 when it is smaller, else
/// 0. A part is the decimal number that it begins with, cut to 16 bits; missing parts are 0,
/// further ones are ignored.
///
/// For whether the gallery holds a newer version. CompareVersionTexts (merge/MergeRules.h), for
/// what merging needs, differs: its parts are numbers of any size, and it looks at all of them.
int CompareVersions(const CWideString& a, const CWideString& b) noexcept;
