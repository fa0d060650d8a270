#include "com/error/ErrorHandler.h"
#include "com/frame/ComServer.h"
#include "com/frame/DllLock.h"
#include "com/frame/Registrar.h"
#include "com/loader/ComponentLoader.h"
#include "module/TableCache.h"
#include "server/QMMMUpdaterApp.h"

namespace {

qm::server::CQMMMUpdaterApp theApp;

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* reserved) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      theApp.SetInstance(instance);
      return theApp.InitInstance();
    case DLL_PROCESS_DETACH:
      // When the process ends (reserved is not null), other DLLs may be gone already, so nothing is
      // released that needs them. The C library runs the destructors of static objects in either
      // case. They free a critical section and thread-local slots, which needs only system DLLs.
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
  if (qm::com::DllLock::Count() == 0) {
    qm::module::DropCachedTables();
    qm::com::UnloadIdleSiblings();
  }
  // Checked again because the code of the siblings may have created an object meanwhile.
  return qm::com::DllLock::Count() == 0 ? S_OK : S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return qm::com::ComServer::Instance().GetClassObject(clsid, iid, out);
}

STDAPI DllRegisterServer() {
  return qm::com::RunAtBoundary(GUID_NULL, [] {
    qm::com::RegisterServer(qm::server::GetServerObjects(), theApp.Instance());
    return S_OK;
  });
}

STDAPI DllUnregisterServer() {
  return qm::com::RunAtBoundary(GUID_NULL, [] {
    qm::com::UnregisterServer(qm::server::GetServerObjects(), theApp.Instance());
    return S_OK;
  });
}
