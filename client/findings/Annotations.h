#pragma once

#include <string>

#include "client/findings/CheckResult.h"

namespace mmcat {

// New findings in the formats of build services. Each service shows them beside the file or in the
// log. Known and ignored findings are left out, since the services have no place for them.

/// Workflow commands of GitHub Actions: one line each.
std::string FormatGitHub(const CheckResult& result);

/// Logging commands of Azure Pipelines: one line each.
std::string FormatAzure(const CheckResult& result);

/// Service messages of TeamCity, for its inspections.
std::string FormatTeamCity(const CheckResult& result);

/// A Code Quality report of GitLab, a JSON document. Throws ServerFailure.
std::string FormatGitLab(const CheckResult& result);

}  // namespace mmcat
