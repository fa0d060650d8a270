#pragma once

#include "com/error/Exception.h"

namespace qm::com {

/// The application object of a DLL. It is constructed at load; DllMain calls InitInstance and
/// ExitInstance.
class WinApp : public CObject {
 public:
  /// Called at load. If it returns FALSE, the DLL is not loaded. An override calls this one last.
  virtual BOOL InitInstance() { return TRUE; }

  /// Called at unload, but not when the process ends. An override calls this one last.
  virtual int ExitInstance() { return 0; }

  HINSTANCE Instance() const noexcept { return m_instance; }
  void SetInstance(HINSTANCE instance) noexcept { m_instance = instance; }

 private:
  HINSTANCE m_instance = nullptr;
};

}  // namespace qm::com
