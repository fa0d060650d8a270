#pragma once

#include <windows.h>

#include "common/WideString.h"

/// Returns the full path of the file of a DLL or program, of any length. Raises the system's
/// failure.
CWideString ModulePath(HINSTANCE instance);
