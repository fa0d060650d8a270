#pragma once

#include <cstddef>

#include "client/terminal/ExitCode.h"

namespace mmcat {

/// Returns kSuccess if a catalog has modules. Otherwise prints a remark and returns
/// kNothingMatched: a folder without modules is hardly ever what the user meant.
ExitCode RequireModules(size_t modules);

}  // namespace mmcat
