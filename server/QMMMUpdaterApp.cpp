#include "server/QMMMUpdaterApp.h"

#include "com/frame/ComModule.h"
#include "common/ModuleLifetime.h"

BOOL CQMMMUpdaterApp::InitInstance() {
  CComModule::Instance().Init(ServerObjects(), Instance());
  return CWinApp::InitInstance();
}

int CQMMMUpdaterApp::ExitInstance() {
  EndModuleLifetime();
  return CWinApp::ExitInstance();
}
