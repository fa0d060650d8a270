#pragma once

#include "msidb/DirectoryResolution.h"

/// The options for showing where a module's files go: "[ProgramFilesFolder]My Company\\bin". The
/// brackets are those of installer properties, whatever kind of project is active. Throws
/// std::bad_alloc as CProjectTraitsManager::Instance does.
msidb::DirectoryOptions TargetPathOptions();
