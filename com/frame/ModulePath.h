#pragma once

#include <windows.h>

#include "common/WideString.h"

/// Full path of a module's file, of any length. Raises the system's failure.
CWideString ModulePath(HINSTANCE instance);
