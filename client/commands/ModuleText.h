#pragma once

#include <string>

#include "client/catalog/ModuleDescription.h"

/// A module for people: its key, identity and summary, then one table per collection that has
/// items.
std::string ModuleText(const ModuleDescription& module);
