#include "msidb/ModuleDirectories.h"

#include "msidb/DirectoryResolution.h"
#include "server/error/ErrorHandler.h"

namespace msidb {

namespace {

TargetDirectory Resolve(const Database& database, const CWideString& key) {
  TargetDirectory directory;
  directory.result = RunAtBoundary(GUID_NULL, [&] {
    directory.path = RequireDirectoryPath(database, key, kTargetPath);
    return S_OK;
  });
  if (FAILED(directory.result)) {
    directory.description = com_exception(directory.result).description;
  }
  return directory;
}

}  // namespace

HRESULT ResolveModuleDirectories(const CWideString& module,
                                 TargetDirectories& directories) noexcept {
  return RunAtBoundary(GUID_NULL, [&] {
    const Database database = Database::OpenReadOnly(module);
    for (auto& [key, directory] : directories) {
      directory = Resolve(database, key);
    }
    return S_OK;
  });
}

}  // namespace msidb
