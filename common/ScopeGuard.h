#pragma once

#include <utility>

namespace qm::common {

/// Calls `leave` when the scope is left, on success and on failure. `leave` must not throw.
template <class Leave>
class ScopeGuard {
 public:
  explicit ScopeGuard(Leave leave) noexcept : m_leave(std::move(leave)) {}
  ~ScopeGuard() { m_leave(); }
  ScopeGuard(const ScopeGuard&) = delete;
  ScopeGuard& operator=(const ScopeGuard&) = delete;

 private:
  Leave m_leave;
};

}  // namespace qm::common
