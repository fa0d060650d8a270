#pragma once

#include "com/error/Exception.h"

/// Application object of a DLL: made at load, started and ended by DllMain.
class CWinApp : public CObject {
 public:
  /// Start; FALSE refuses the load. An override ends with a call of this one.
  virtual BOOL InitInstance() { return TRUE; }

  /// End, not called when the whole process ends. An override ends with a call of this one.
  virtual int ExitInstance() { return 0; }

  HINSTANCE Instance() const noexcept { return m_instance; }
  void SetInstance(HINSTANCE instance) noexcept { m_instance = instance; }

 private:
  HINSTANCE m_instance = nullptr;
};
