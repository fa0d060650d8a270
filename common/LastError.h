#pragma once

#include <windows.h>

/// Restores the thread's last-error code at the end of the scope.
class CLastErrorKeeper {
 public:
  CLastErrorKeeper() noexcept : m_code(::GetLastError()) {}
  ~CLastErrorKeeper() { ::SetLastError(m_code); }
  CLastErrorKeeper(const CLastErrorKeeper&) = delete;
  CLastErrorKeeper& operator=(const CLastErrorKeeper&) = delete;

 private:
  DWORD m_code;
};
