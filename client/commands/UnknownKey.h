#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleNames.h"

namespace mmcat {

/// Whether a command takes patterns of modules.
enum class Patterns { Accepted, Refused };

/// Prints a remark on a word that names no module of the catalog, or several of which one was
/// wanted: what it may be instead, and which command fits better. `command` is that of
/// AdviseOnFile.
void PrintUnknownKey(const std::vector<NamedModule>& modules, const std::string& word,
                     const std::string& command, Patterns patterns = Patterns::Accepted);

}  // namespace mmcat
