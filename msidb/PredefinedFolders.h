#pragma once

#include "common/WideString.h"

namespace qm::msidb {

/// Finds the predefined folder with the given key in upper case and returns its usual spelling;
/// null if the key is not one at which a walk up the Directory table ends. Throws std::bad_alloc.
const wchar_t* FindPredefinedFolder(const common::WideString& upperCaseKey);

}  // namespace qm::msidb
