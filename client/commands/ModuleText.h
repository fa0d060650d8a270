#pragma once

#include <string>

#include "client/catalog/ModuleContents.h"

namespace mmcat {

/// A module as text: its key, identity and summary, then a table for each collection that is not
/// empty. Marked for colours (Style.h).
std::string FormatModule(const ModuleContents& module);

}  // namespace mmcat
