#pragma once

#include <unknwn.h>

/// The kind of a project of the host, as its settings tell it. Raises E_NOINTERFACE for an object
/// that is no project, and the failures of the host's calls.
long GetProjectKind(IUnknown& project);
