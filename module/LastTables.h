#pragma once

#include <windows.h>

#include <memory>

#include "msidb/ModuleDatabase.h"

/// Guards the tables of all module records, and what OpenForTables keeps. Whoever holds it reads
/// files, and calls nobody's objects.
SRWLOCK& LockOfTables() noexcept;

/// The database of the module at the full path `path`, open for the tables of a module record.
/// Whoever asks for one of them mostly asks for the others next, so all are read at once, and kept
/// until another module is asked for. They are read again if the file has changed since. Failures
/// are raised as by ModuleDatabase::Open. The caller holds LockOfTables.
std::shared_ptr<const msidb::ModuleDatabase> OpenForTables(const CWideString& path);

/// Drops what is kept, for a server that nobody uses at the moment.
void ForgetLastTables() noexcept;
