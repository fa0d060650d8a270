#pragma once

#include "common/WideString.h"

namespace msidb {

/// The written form of a predefined folder at which a walk through the Directory table ends, by its
/// key in upper case; null for any other key. Throws std::bad_alloc.
const wchar_t* FindPredefinedRoot(const CWideString& upperCaseKey);

}  // namespace msidb
