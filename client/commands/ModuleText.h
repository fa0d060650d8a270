#pragma once

#include <string>

#include "client/catalog/ModuleContents.h"

/// A module as text: its key, identity and summary, then a table for each collection that is not
/// empty. Marked for colours (Style.h).
std::string ModuleText(const ModuleDescription& module);
