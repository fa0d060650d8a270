#pragma once

#include <string>

#include "common/ComPtr.h"
#include "idl/qmmmupdater2.h"

namespace mmcat {

/// Opens the module file at a path as the user spells it. Throws ServerFailure.
qm::common::ComPtr<IMergeModule2> OpenModuleFile(const std::string& path);

}  // namespace mmcat
