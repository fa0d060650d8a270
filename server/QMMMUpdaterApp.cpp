#include "server/QMMMUpdaterApp.h"

#include "common/ModuleLifetime.h"

BOOL CQMMMUpdaterApp::InitInstance() {
  CComModule::Instance().Init(ServerObjects(), Instance());
  return CWinApp::InitInstance();
}

int CQMMMUpdaterApp::ExitInstance() {
  CComModule::Instance().Term();
  EndModuleLifetime();
  return CWinApp::ExitInstance();
}
