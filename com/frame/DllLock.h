#pragma once

#include <windows.h>

namespace qm::com {

/// Counts what keeps the DLL loaded: live objects, references that clients hold to class factories,
/// and locks of IClassFactory::LockServer. One count per DLL. Thread-safe.
class DllLock {
 public:
  DllLock() = delete;

  static void Add() noexcept { ::InterlockedIncrement(&s_count); }
  static void Remove() noexcept { ::InterlockedDecrement(&s_count); }
  static LONG Count() noexcept { return s_count; }

 private:
  static inline LONG s_count = 0;
};

}  // namespace qm::com
