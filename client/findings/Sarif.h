#pragma once

#include <string>

#include "client/findings/CheckResult.h"

namespace mmcat {

/// A result as a SARIF 2.1.0 log. It lists 25,000 findings at most, which is what large consumers
/// accept, the worst of them; a notification in it says how many were left out. Throws
/// ServerFailure.
std::string FormatSarif(const CheckResult& result);

/// How many findings a log leaves out.
size_t CountLeftOutOfSarif(const CheckResult& result) noexcept;

}  // namespace mmcat
