#pragma once

#include <windows.h>

#include <map>

#include "common/WideString.h"
#include "msidb/DirectoryResolution.h"

namespace qm::msidb {

/// The path of a directory of a module, or the failure to resolve it.
struct TargetDirectory {
  common::WideString path;  ///< "[ProgramFilesFolder]My Company\\bin"
  /// The key, without the module's suffix, of the first system folder on the way up
  /// ("System64Folder"), even if the path does not contain it; otherwise that of the topmost row,
  /// TARGETDIR. Empty if a row on the way is missing.
  common::WideString root;
  HRESULT result = S_OK;           ///< a failing HRESULT if the path cannot be resolved
  common::WideString description;  ///< of the failure; empty on success
};

/// Target directories by Directory key.
using TargetDirectoryMap = std::map<common::WideString, TargetDirectory>;

/// Resolves every key of `directories`, opening the module at the path `module` once. A directory
/// that cannot be resolved has a failing `result`; the others are still resolved.
///
/// Returns a failing HRESULT, with the thread's error object set, if the module cannot be read or
/// was written meanwhile, and E_OUTOFMEMORY without an error object.
HRESULT ResolveTargetDirectories(const common::WideString& module, const DirectoryOptions& options,
                                 TargetDirectoryMap& directories) noexcept;

}  // namespace qm::msidb
