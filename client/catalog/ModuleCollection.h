#pragma once

#include <vector>

#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"

namespace mmcat {

using ModuleObjects = std::vector<qm::common::ComPtr<IMergeModule>>;

/// Makes a collection of modules from anywhere, in the given order. It belongs to the current
/// thread. Like all of the client's COM objects, it is for callers in this process: its members
/// cannot be called by name. Throws std::bad_alloc.
qm::common::ComPtr<IMergeModules> MakeModuleCollection(ModuleObjects modules);

}  // namespace mmcat
