#pragma once

#include <windows.h>

/// Holds an SRWLOCK exclusively while in scope. Hold it for a few instructions only, or for work
/// that calls no other objects: a thread that waits for it dispatches no COM calls.
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
