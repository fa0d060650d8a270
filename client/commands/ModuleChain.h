#pragma once

#include <string>
#include <vector>

#include "client/catalog/ModuleSet.h"
#include "client/terminal/Report.h"

namespace mmcat {

/// Joins the keys of modules each of which needs the next one: "A:1033 -> B:1033".
std::string FormatChain(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& chain);

/// The same for the chain from a user to the module `needed`. The middle of a long chain is only
/// counted: "A:1033 -> (12 more) -> B:1033".
std::string FormatChain(const std::vector<ModuleFacts>& modules, const UserFacts& user,
                        size_t needed);

/// Makes a list of the keys of modules.
Json MakeKeysJson(const std::vector<ModuleFacts>& modules, const std::vector<size_t>& positions);

}  // namespace mmcat
