#pragma once

#include "common/WideString.h"

namespace qm::gallery {

/// Compares dotted versions of up to four parts. Returns 1 if `a` is greater, -1 if it is less, and
/// 0 if they are equal. The value of a part is its leading decimal number, truncated to 16 bits.
/// Missing parts are 0, further parts are ignored.
///
/// Decides whether the gallery has a newer version. Merging has other rules: CompareVersionTexts
/// (merge/MergeRules.h) compares all parts, as numbers of any size.
int CompareVersions(const common::WideString& a, const common::WideString& b) noexcept;

}  // namespace qm::gallery
