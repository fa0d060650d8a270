#pragma once

#include <windows.h>

namespace qm::common {

/// Restores the thread's last-error code at the end of the scope.
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
