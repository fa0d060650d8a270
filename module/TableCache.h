#pragma once

#include <windows.h>

#include <memory>

#include "msidb/ModuleDatabase.h"

namespace qm::module {

/// The lock that guards the tables of all module records and the database that OpenForReadingTables
/// keeps. Its holder may read files but must not call COM objects.
SRWLOCK& TableLock() noexcept;

/// Opens the module at the full path `path` for reading the tables of a module record. A client
/// that asks for one table usually asks for the others next, so all are read at once and kept until
/// another module is opened or the file changes. Raises failures as ModuleDatabase::Open and
/// LoadAndClose do. The caller holds TableLock.
std::shared_ptr<const msidb::ModuleDatabase> OpenForReadingTables(const common::WideString& path);

/// Drops the database that OpenForReadingTables keeps. Called when the server is idle.
void DropCachedTables() noexcept;

}  // namespace qm::module
