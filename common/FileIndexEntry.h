#pragma once

#include "common/WideString.h"

// What the entries of the index files say: which module delivers a file. Keys without a language
// name the neutral one; the answer always has one ("ID:0").

/// The module key of an entry of FilesToModules.ini, "flag:key"; empty unless the flag is 0. "0:"
/// is the key of a module without an ID, ":0".
CWideString ModuleOfFileEntry(std::wstring_view entry);

/// The module key of an entry of PlatformFilesToModules.ini, which may also be a key without a
/// flag; a flag is digits. Empty when the entry names no module.
CWideString ModuleOfPlatformFileEntry(std::wstring_view entry);
