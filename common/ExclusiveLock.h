#pragma once

#include <windows.h>

namespace qm::common {

/// Holds an SRWLOCK exclusively while in scope. Hold it for a few instructions only, or for work
/// that calls no other objects: a thread that waits for it dispatches no COM calls.
class ExclusiveLock {
 public:
  explicit ExclusiveLock(SRWLOCK& lock) noexcept : m_lock(lock) {
    ::AcquireSRWLockExclusive(&m_lock);
  }
  ~ExclusiveLock() { ::ReleaseSRWLockExclusive(&m_lock); }
  ExclusiveLock(const ExclusiveLock&) = delete;
  ExclusiveLock& operator=(const ExclusiveLock&) = delete;

 private:
  SRWLOCK& m_lock;
};

}  // namespace qm::common
