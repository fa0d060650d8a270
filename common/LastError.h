#pragma once

#include <windows.h>

/// Keeps the thread's last-error code: whatever the scope calls, GetLastError() afterwards gives
/// what it gave before.
class CLastErrorKeeper {
 public:
  CLastErrorKeeper() noexcept : m_code(::GetLastError()) {}
  ~CLastErrorKeeper() { ::SetLastError(m_code); }
  CLastErrorKeeper(const CLastErrorKeeper&) = delete;
  CLastErrorKeeper& operator=(const CLastErrorKeeper&) = delete;

 private:
  DWORD m_code;
};
