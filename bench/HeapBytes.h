#pragma once

#include <windows.h>

#include <algorithm>

namespace qm::bench {

/// Returns the number of bytes in use in all heaps of the process.
inline size_t HeapBytes() {
  HANDLE heaps[64];
  const DWORD count = std::min<DWORD>(::GetProcessHeaps(64, heaps), 64);
  size_t bytes = 0;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    while (::HeapWalk(heaps[i], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
        bytes += entry.cbData + entry.cbOverhead;
      }
    }
  }
  return bytes;
}

}  // namespace qm::bench
