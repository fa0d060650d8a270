#pragma once

#include "msidb/Database.h"

namespace qm::traits {

/// Return whether a database is an installer-database project or a merge-module project of the
/// environment, by the row 'Type' of its table Quillmark. False without the table or the row.
/// Installer failures are raised. The server calls neither function.
bool IsInstallerProject(const msidb::Database& database);
bool IsMergeModuleProject(const msidb::Database& database);

}  // namespace qm::traits
