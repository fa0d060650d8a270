#pragma once

#include "msidb/DirectoryResolution.h"

/// The options for showing where a module's files go: "[ProgramFilesFolder]My Company\\bin". The
/// brackets are those of installer properties in projects of any kind.
msidb::DirectoryOptions TargetPathOptions() noexcept;
