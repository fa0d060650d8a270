#pragma once

#include <windows.h>

namespace qm::common {

/// Saves the thread's last-error code and restores it at the end of the scope.
class ScopedLastError {
 public:
  ScopedLastError() noexcept : m_code(::GetLastError()) {}
  ~ScopedLastError() { ::SetLastError(m_code); }
  ScopedLastError(const ScopedLastError&) = delete;
  ScopedLastError& operator=(const ScopedLastError&) = delete;

 private:
  DWORD m_code;
};

}  // namespace qm::common
