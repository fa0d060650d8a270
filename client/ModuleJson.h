#pragma once

#include <nlohmann/json.hpp>

#include "client/ModuleDescription.h"

/// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

/// A module for machines: every value, empty ones too; null for a number that the module leaves
/// out.
Json ModuleJson(const ModuleDescription& module);

/// A failure to read `file`, or only a part of it; `part` is empty for the whole.
Json FailureJson(const std::string& file, const std::string& part, const ServerFailure& failure);
