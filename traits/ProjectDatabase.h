#pragma once

#include "msidb/Database.h"

namespace msidb {

/// Whether the database is an installer-database project of the environment, or a merge-module
/// project: its table Quillmark says so under 'Type'. No caller in the server. False without the
/// table or the row; an installer failure is raised.
bool IsInstallerProject(const Database& database);
bool IsMergeModuleProject(const Database& database);

}  // namespace msidb
