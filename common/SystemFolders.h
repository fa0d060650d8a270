#pragma once

#include "common/WideString.h"

// The machine's own folders. What the system does not tell is an empty path, never an error.

/// Request for the 64-bit view of the machine, added to one of the requests below.
constexpr unsigned long kNativeFolder = 0x80000000;

constexpr unsigned long kProgramFiles = 0;
constexpr unsigned long kCommonFiles = 1;

/// The program files folder, or for kCommonFiles the common files folder, as the registry gives it.
CWideString GetProgramFolder(unsigned long request);

constexpr unsigned long kSysNative = 1;
constexpr unsigned long kSysWow64 = 2;

/// "sysnative" or "syswow64" in the Windows folder; for any other request the system folder. No
/// caller in the server.
CWideString GetSystemFolder(unsigned long request);
