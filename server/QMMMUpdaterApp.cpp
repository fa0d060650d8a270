#include "server/QMMMUpdaterApp.h"

#include <new>

#include "com/frame/ComServer.h"
#include "common/DllLifetime.h"
#include "traits/ProjectTraitsManager.h"

namespace qm::server {

BOOL CQMMMUpdaterApp::InitInstance() {
  com::ComServer::Instance().Init(GetServerObjects(), Instance());
  try {
    traits::CProjectTraitsManager::Instance();
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
  return com::WinApp::InitInstance();
}

int CQMMMUpdaterApp::ExitInstance() {
  common::EndDllLifetime();
  return com::WinApp::ExitInstance();
}

}  // namespace qm::server
