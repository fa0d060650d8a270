#pragma once

#include <windows.h>

#include <string_view>

#include "merge/Module.h"
#include "merge/SharedStreams.h"
#include "msidb/ModuleFile.h"

namespace qm::analysis {

/// What a module's file contains.
struct ModuleContents {
  merge::Module module;  ///< without what only a catalog knows; see merge::ModuleListing
  HRESULT code = S_OK;   ///< of Module::failure
};

/// Reads a module from its file at `path`. Damage is the module's failure. Throws msidb::FileError,
/// and std::bad_alloc.
ModuleContents ReadModuleContents(msidb::ModuleFile& file, std::string_view path,
                                  merge::SharedStreams& shared);

}  // namespace qm::analysis
