#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleSet.h"
#include "client/terminal/Report.h"

namespace mmcat {

/// Joins the keys of modules each of which needs the next one: "A:1033 -> B:1033".
std::string FormatChain(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& chain);

/// Makes a list of the keys of modules.
Json MakeKeysJson(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& positions);

}  // namespace mmcat
