#pragma once

#include "common/WideString.h"

namespace qm::common {

// Folders of the machine. A folder that the system does not report is an empty path, never an
// error.

/// Flag for the requests of GetProgramFolder: reads the 64-bit view of the registry.
constexpr unsigned long kNativeFolder = 0x80000000;

constexpr unsigned long kProgramFiles = 0;
constexpr unsigned long kCommonFiles = 1;

/// Returns the program files folder, or for kCommonFiles the common files folder, from the
/// registry.
WideString GetProgramFolder(unsigned long request);

constexpr unsigned long kSysNative = 1;
constexpr unsigned long kSysWow64 = 2;

/// Returns "sysnative" or "syswow64" in the Windows folder; for any other request the system
/// folder. The server does not call it.
WideString GetSystemFolder(unsigned long request);

}  // namespace qm::common
