#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleNames.h"

namespace mmcat {

/// Prints a remark on a word that names no module of the catalog, or several of which one was
/// wanted: what it may be instead, and which command fits better.
void PrintUnknownKey(const std::vector<NamedModule>& modules, const std::string& word);

}  // namespace mmcat
