#pragma once

#include <string>
#include <vector>

#include "common/WideString.h"

/// The names of the files, not folders, that a path with wildcards in its last part stands for, in
/// their order without regard to case; none when the folder cannot be read. Short names match too.
std::vector<std::wstring> FileNames(const CWideString& pattern);
