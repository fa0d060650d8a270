#pragma once

#include <string>
#include <vector>

#include "common/WideString.h"

namespace mmcat {

/// The names of the files, but not folders, that match a path with wildcards in its last part,
/// sorted ignoring case. Short names match too. Returns nothing if the folder cannot be read.
std::vector<std::wstring> FindFileNames(const qm::common::WideString& pattern);

}  // namespace mmcat
