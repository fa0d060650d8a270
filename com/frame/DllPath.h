#pragma once

#include <windows.h>

#include "common/WideString.h"

namespace qm::com {

/// Returns the full path of the file of a DLL or program, of any length. Raises the system's
/// failure.
common::WideString DllPath(HINSTANCE instance);

}  // namespace qm::com
