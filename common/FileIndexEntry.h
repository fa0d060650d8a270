#pragma once

#include "common/WideString.h"

namespace qm::common {

// The entries of the index files state which module delivers a file. A key without a language means
// the neutral one. The keys returned here always have a language ("ID:0").

/// Returns the module key in an entry of FilesToModules.ini, "flag:key". Empty unless the flag is
/// 0. "0:" returns ":0", the key of a module without an ID.
WideString ParseFileIndexEntry(std::wstring_view entry);

/// Returns the module key in an entry of PlatformFilesToModules.ini, where the flag, a run of
/// digits, is optional. Empty if the entry is empty or its flag is not 0.
WideString ParsePlatformFileIndexEntry(std::wstring_view entry);

}  // namespace qm::common
