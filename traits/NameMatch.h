#pragma once

#include <algorithm>
#include <iterator>

#include "common/WideString.h"

/// Returns whether `name` is one of `names`. Case-sensitive.
template <size_t Count>
bool IsInList(const wchar_t* const (&names)[Count], const CWideString& name) noexcept {
  return std::any_of(std::begin(names), std::end(names),
                     [&](const wchar_t* candidate) { return name == candidate; });
}
