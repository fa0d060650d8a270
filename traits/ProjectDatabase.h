#pragma once

#include "msidb/Database.h"

namespace qm::traits {

// Both read the row 'Type' of the table Quillmark and return false if the table or the row is
// missing. Installer failures are raised. The server calls neither function.

/// Returns whether a database is an installer-database project of the environment.
bool IsInstallerProject(const msidb::Database& database);
/// Returns whether a database is a merge-module project of the environment.
bool IsMergeModuleProject(const msidb::Database& database);

}  // namespace qm::traits
