#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleNames.h"

namespace mmcat {

/// Prints a remark on a word that names no module of the catalog, or several of which one was
/// wanted: what it may be instead, and which command fits better. `command` is that of
/// AdviseOnFile.
void PrintUnknownKey(const std::vector<NamedModule>& modules, const std::string& word,
                     const std::string& command);

}  // namespace mmcat
