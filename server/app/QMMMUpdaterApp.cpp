#include "server/app/QMMMUpdaterApp.h"

#include <exception>

BOOL CQMMMUpdaterApp::InitInstance() {
  // Has the C++ runtime make this thread's exception state now: making it at the first throw ends
  // the process when memory is short then.
  (void)std::uncaught_exceptions();
  CComModule::Instance().Init(ServerObjects(), Instance());
  return CWinApp::InitInstance();
}

int CQMMMUpdaterApp::ExitInstance() {
  CComModule::Instance().Term();
  return CWinApp::ExitInstance();
}
