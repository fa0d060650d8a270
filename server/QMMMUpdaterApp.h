#pragma once

#include "com/frame/ObjectMap.h"
#include "com/frame/WinApp.h"

namespace qm::server {

/// Application object of the server. InitInstance initialises the ComServer and creates the
/// manager of the project traits; ExitInstance ends everything that the DLL keeps for its lifetime.
class CQMMMUpdaterApp final : public com::WinApp {
 public:
  BOOL InitInstance() override;
  int ExitInstance() override;
};

/// The coclasses that this server creates.
const com::ObjectMap& GetServerObjects() noexcept;

}  // namespace qm::server
