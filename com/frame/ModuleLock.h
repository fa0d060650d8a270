#pragma once

#include <windows.h>

/// Counts what keeps the DLL loaded: objects that are alive, class factories that clients hold, and
/// locks of IClassFactory::LockServer. One count per DLL; any thread may change it.
class ModuleLock {
 public:
  ModuleLock() = delete;

  static void Add() noexcept { ::InterlockedIncrement(&s_count); }
  static void Remove() noexcept { ::InterlockedDecrement(&s_count); }
  static LONG Count() noexcept { return s_count; }

 private:
  static inline LONG s_count = 0;
};
