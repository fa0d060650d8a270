#pragma once

#include "msidb/DirectoryResolution.h"

namespace qm::traits {

/// Returns the options for showing where the files of a module are installed:
/// "[ProgramFilesFolder]My Company\bin". The brackets are those of installer properties, whatever
/// kind of project is active. Throws std::bad_alloc as CProjectTraitsManager::Instance does.
msidb::DirectoryOptions MakeTargetPathOptions();

}  // namespace qm::traits
