#pragma once

#include <windows.h>

#include <string>

namespace mmcat {

/// The system's text for a GetLastError() code, as UTF-8 on one line.
std::string FormatSystemError(DWORD code);

}  // namespace mmcat
