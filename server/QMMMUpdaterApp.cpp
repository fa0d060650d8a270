#include "server/QMMMUpdaterApp.h"

#include <new>

#include "com/frame/ComServer.h"
#include "common/DllLifetime.h"
#include "traits/ProjectTraitsManager.h"

BOOL CQMMMUpdaterApp::InitInstance() {
  CComModule::Instance().Init(ServerObjects(), Instance());
  try {
    CProjectTraitsManager::Instance();
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return CWinApp::InitInstance();
}

int CQMMMUpdaterApp::ExitInstance() {
  EndModuleLifetime();
  return CWinApp::ExitInstance();
}
