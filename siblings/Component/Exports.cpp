#include "com/error/ErrorHandler.h"
#include "com/frame/ComServer.h"
#include "com/frame/DllLock.h"
#include "com/frame/Registrar.h"
#include "common/DllLifetime.h"
#include "siblings/Component/Component.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_ATTACH) {
    CComModule::Instance().Init(ComponentObjects(), instance);
  } else if (reason == DLL_PROCESS_DETACH && !reserved) {
    // When the process ends (reserved is not null), other DLLs may be gone already, so nothing is
    // released that needs them.
    EndModuleLifetime();
  }
  return TRUE;
}

STDAPI DllCanUnloadNow() { return ModuleLock::Count() == 0 ? S_OK : S_FALSE; }

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return CComModule::Instance().GetClassObject(clsid, iid, out);
}

STDAPI DllRegisterServer() {
  return RunAtBoundary(GUID_NULL, [] {
    RegisterServer(ComponentObjects(), CComModule::Instance().ModuleInstance());
    return S_OK;
  });
}

STDAPI DllUnregisterServer() {
  return RunAtBoundary(GUID_NULL, [] {
    UnregisterServer(ComponentObjects(), CComModule::Instance().ModuleInstance());
    return S_OK;
  });
}
