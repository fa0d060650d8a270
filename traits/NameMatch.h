#pragma once

#include <algorithm>
#include <iterator>

#include "common/WideString.h"

namespace qm::traits {

/// Returns whether `name` is one of `names`. Case-sensitive.
template <size_t Count>
bool Contains(const wchar_t* const (&names)[Count], const common::WideString& name) noexcept {
  return std::any_of(std::begin(names), std::end(names),
                     [&](const wchar_t* candidate) { return name == candidate; });
}

}  // namespace qm::traits
