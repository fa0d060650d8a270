#pragma once

#include "common/WideString.h"

/// The key of the module that delivers a file, by its name or path, from the index tables of the
/// process; empty when they name none.
CWideString FindModuleForFile(std::wstring_view file);
