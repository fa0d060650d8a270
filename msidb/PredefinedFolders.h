#pragma once

#include "common/WideString.h"

namespace msidb {

/// The written form of a predefined folder at which a walk through the Directory table ends, by its
/// key in upper case; null for any other key. E_OUTOFMEMORY is raised.
const wchar_t* FindPredefinedRoot(const CWideString& upperCaseKey);

}  // namespace msidb
