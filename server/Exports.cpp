#include "com/error/ErrorHandler.h"
#include "com/frame/ComModule.h"
#include "com/frame/ModuleLock.h"
#include "com/frame/Registrar.h"
#include "com/loader/ComponentLoader.h"
#include "module/LastTables.h"
#include "server/QMMMUpdaterApp.h"

namespace {

CQMMMUpdaterApp theApp;

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* reserved) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      theApp.SetInstance(instance);
      return theApp.InitInstance();
    case DLL_PROCESS_DETACH:
      // When the process ends (reserved is set) other DLLs may be gone: nothing is released then.
      // What the module keeps has no destructor that the C library would run.
      if (!reserved) {
        theApp.ExitInstance();
      }
      break;
    default:
      break;
  }
  return TRUE;
}

STDAPI DllCanUnloadNow() {
  if (ModuleLock::Count() == 0) {
    ForgetLastTables();
    UnloadIdleSiblings();
  }
  // Asked after the siblings, whose code may have made an object meanwhile.
  return ModuleLock::Count() == 0 ? S_OK : S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return CComModule::Instance().GetClassObject(clsid, iid, out);
}

STDAPI DllRegisterServer() {
  return RunAtBoundary(GUID_NULL,
                       [] { return RegisterServer(ServerObjects(), theApp.Instance()); });
}

STDAPI DllUnregisterServer() {
  return RunAtBoundary(GUID_NULL,
                       [] { return UnregisterServer(ServerObjects(), theApp.Instance()); });
}
