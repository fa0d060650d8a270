#include "catalog/ProjectKind.h"

#include "com/error/Raise.h"
#include "common/ComPtr.h"
#include "idl/host.h"

long GetProjectKind(IUnknown& project) {
  CComPtr<IHostProject> hostProject;
  RaiseIfFailed(
      project.QueryInterface(__uuidof(IHostProject), reinterpret_cast<void**>(hostProject.Put())));
  CComPtr<IHostProjectSettings> settings;
  RaiseIfFailed(hostProject->GetSettings(settings.Put()));
  if (!settings) {
    Raise(com_exception(E_UNEXPECTED, L"The project has no settings."));
  }
  long kind = 0;
  RaiseIfFailed(settings->GetProjectKind(&kind));
  return kind;
}
