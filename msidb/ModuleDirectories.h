#pragma once

#include <windows.h>

#include <map>

#include "common/WideString.h"

namespace msidb {

/// Paths of a module's directories by their keys of the Directory table.
using DirectoryPaths = std::map<CWideString, CWideString>;

/// Fills in the path of every key of `paths`, for showing where the files of the module at `module`
/// go:
/// "[ProgramFilesFolder]My Company\bin". Each key is resolved once, over one open database.
///
/// Never throws: answers a failing HRESULT, with the thread's error object, when the module cannot
/// be read; keys before the failure are filled in then.
HRESULT ResolveModuleDirectories(const CWideString& module, DirectoryPaths& paths) noexcept;

}  // namespace msidb
