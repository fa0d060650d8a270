#pragma once

#include "common/WideString.h"

namespace qm::catalog {

/// Looks up the key of the module that delivers a file, given by name or path, in the index tables
/// of the process; empty if they list no module for it.
common::WideString FindModuleForFile(std::wstring_view file);

}  // namespace qm::catalog
