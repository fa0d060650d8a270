#pragma once

#include <windows.h>

#include "common/WideString.h"

/// Full path of a module's file, of any length. Throws qm::win32_exception.
CWideString ModulePath(HINSTANCE instance);
