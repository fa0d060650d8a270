#pragma once

#include <string>

#include "common/ComPtr.h"
#include "idl/qmmmupdater2.h"

namespace mmcat {

/// Opens a module file at a path of the user. Throws ServerFailure.
qm::common::ComPtr<IMergeModule2> OpenModuleFile(const std::string& path);

}  // namespace mmcat
