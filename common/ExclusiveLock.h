#pragma once

#include <windows.h>

/// Holds an SRWLOCK for the life of the object. For a few instructions, or for work that calls
/// nobody else's objects: a thread that waits for the lock dispatches nothing.
class CExclusiveLock {
 public:
  explicit CExclusiveLock(SRWLOCK& lock) noexcept : m_lock(lock) {
    ::AcquireSRWLockExclusive(&m_lock);
  }
  ~CExclusiveLock() { ::ReleaseSRWLockExclusive(&m_lock); }
  CExclusiveLock(const CExclusiveLock&) = delete;
  CExclusiveLock& operator=(const CExclusiveLock&) = delete;

 private:
  SRWLOCK& m_lock;
};
