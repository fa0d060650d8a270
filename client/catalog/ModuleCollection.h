#pragma once

#include <functional>
#include <vector>

#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"

namespace mmcat {

using ModuleObjects = std::vector<qm::common::ComPtr<IMergeModule>>;

/// Makes a collection of modules from anywhere, in the given order. `onItem`, unless it is null, is
/// called for each element that is asked for, and must not throw. The collection belongs to the
/// current thread. Like all of the client's COM objects, it is for callers in this process: its
/// members cannot be called by name. Throws std::bad_alloc.
qm::common::ComPtr<IMergeModules> MakeModuleCollection(ModuleObjects modules,
                                                       std::function<void()> onItem = nullptr);

}  // namespace mmcat
