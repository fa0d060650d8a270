#include "catalog/ProjectKind.h"

#include "com/error/Raise.h"
#include "common/ComPtr.h"
#include "idl/host.h"

namespace qm::catalog {

long GetProjectKind(IUnknown& project) {
  common::ComPtr<IHostProject> hostProject;
  com::RaiseIfFailed(
      project.QueryInterface(__uuidof(IHostProject), reinterpret_cast<void**>(hostProject.Put())));
  common::ComPtr<IHostProjectSettings> settings;
  com::RaiseIfFailed(hostProject->GetSettings(settings.Put()));
  if (!settings) {
    com::Raise(com_exception(E_UNEXPECTED, L"The project has no settings."));
  }
  long kind = 0;
  com::RaiseIfFailed(settings->GetProjectKind(&kind));
  return kind;
}

}  // namespace qm::catalog
