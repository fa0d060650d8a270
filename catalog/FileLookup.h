#pragma once

#include "common/WideString.h"

/// Looks up the key of the module that delivers a file, given by name or path, in the index tables
/// of the process; empty if they list no module for it.
CWideString FindModuleForFile(std::wstring_view file);
