#pragma once

#include <unknwn.h>

namespace qm::catalog {

/// Asks the settings of a host project for its kind. Raises E_NOINTERFACE if the object is not a
/// project, and failures of the host's calls.
long GetProjectKind(IUnknown& project);

}  // namespace qm::catalog
