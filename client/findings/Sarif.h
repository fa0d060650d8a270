#pragma once

#include <string>

#include "client/findings/CheckResult.h"

namespace mmcat {

/// A result as a SARIF 2.1.0 log. It lists at most 25,000 findings, the worst ones, because large
/// consumers accept no more. A notification in the log says how many were left out. Throws
/// ServerFailure.
std::string FormatSarif(const CheckResult& result);

/// How many findings a log leaves out.
size_t CountLeftOutOfSarif(const CheckResult& result) noexcept;

}  // namespace mmcat
