#pragma once

#include <string_view>

#include "common/CollectionIndex.h"

namespace qm::analysis {

// These raise E_INVALIDARG. The description quotes at most 200 bytes of a key, as UTF-8.

/// For an index that no element of a collection has.
[[noreturn]] void RaiseNoElement(const common::CollectionIndex& index);

/// For a key that no module of the set has.
[[noreturn]] void RaiseNoModule(std::wstring_view key);

}  // namespace qm::analysis
