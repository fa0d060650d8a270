#pragma once

#include "com/frame/ObjectMap.h"
#include "com/frame/WinApp.h"

/// Application object of the server: starts and ends the COM module, and makes the manager of the
/// project traits. What the DLL keeps for its lifetime ends with ExitInstance.
class CQMMMUpdaterApp final : public CWinApp {
 public:
  BOOL InitInstance() override;
  int ExitInstance() override;
};

/// The coclasses that this server creates.
const ObjectMap& ServerObjects() noexcept;
