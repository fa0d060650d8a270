#pragma once

#include <windows.h>

#include <map>

#include "common/WideString.h"
#include "msidb/DirectoryResolution.h"

namespace msidb {

/// Where a directory of a module lies, or why that cannot be said.
struct TargetDirectory {
  CWideString path;  ///< "[ProgramFilesFolder]My Company\\bin"
  /// The key at which the way to the root ends, without the module's suffix: that of a system
  /// folder
  /// ("System64Folder"), whether the path names it or not, or else TARGETDIR. Empty when the key
  /// has no row.
  CWideString root;
  HRESULT result = S_OK;    ///< a failing HRESULT when the path cannot be resolved
  CWideString description;  ///< of the failure
};

/// Target directories by their keys of the module's Directory table.
using TargetDirectories = std::map<CWideString, TargetDirectory>;

/// Resolves every key of `directories`, each once, over one open database of the module at
/// `module`. A directory that fails does not stand in the way of the others.
///
/// Never throws: answers a failing HRESULT, with the thread's error object, when the module cannot
/// be opened or memory is short.
HRESULT ResolveModuleDirectories(const CWideString& module, const DirectoryOptions& options,
                                 TargetDirectories& directories) noexcept;

}  // namespace msidb
