#include "com/component/Component.h"
#include "com/error/ErrorHandler.h"
#include "com/frame/ComServer.h"
#include "com/frame/DllLock.h"
#include "com/frame/Registrar.h"
#include "common/DllLifetime.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_ATTACH) {
    qm::com::ComServer::Instance().Init(qm::com::GetComponentObjects(), instance);
  } else if (reason == DLL_PROCESS_DETACH && !reserved) {
    // When the process ends (reserved is not null), other DLLs may be gone already, so nothing is
    // released that needs them.
    qm::common::EndDllLifetime();
  }
  return TRUE;
}

STDAPI DllCanUnloadNow() { return qm::com::DllLock::Count() == 0 ? S_OK : S_FALSE; }

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return qm::com::ComServer::Instance().GetClassObject(clsid, iid, out);
}

STDAPI DllRegisterServer() {
  return qm::com::RunAtBoundary(GUID_NULL, [] {
    qm::com::RegisterServer(qm::com::GetComponentObjects(),
                            qm::com::ComServer::Instance().DllInstance());
    return S_OK;
  });
}

STDAPI DllUnregisterServer() {
  return qm::com::RunAtBoundary(GUID_NULL, [] {
    qm::com::UnregisterServer(qm::com::GetComponentObjects(),
                              qm::com::ComServer::Instance().DllInstance());
    return S_OK;
  });
}
