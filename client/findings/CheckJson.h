#pragma once

#include "client/findings/CheckResult.h"

namespace mmcat {

/// Adds a result to the JSON document of a check.
void AddCheckJson(const CheckResult& result, Json& document);

}  // namespace mmcat
