#include "msidb/ModuleDirectories.h"

#include "msidb/DirectoryResolution.h"
#include "msidb/InstallerResult.h"
#include "server/error/ErrorHandler.h"

namespace msidb {

HRESULT ResolveModuleDirectories(const CWideString& module, DirectoryPaths& paths) noexcept {
  return RunAtBoundary(GUID_NULL, [&] {
    const Database database = Database::OpenReadOnly(module);
    for (auto& [key, path] : paths) {
      path = ResolveTargetPath(database, key);
    }
    return S_OK;
  });
}

}  // namespace msidb
