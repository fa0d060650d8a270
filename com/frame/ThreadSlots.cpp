#include <windows.h>

namespace qm::com {

// The C++ runtime is linked into each DLL. It allocates a thread-local slot at the first throw and
// never frees it. A process has 1,088 slots, so a host that keeps loading and unloading the DLL
// would run out of them. This file records every slot that code of this DLL allocates, and frees
// them when the DLL is unloaded.

namespace {

constexpr int kMaxSlots = 8;  // further ones are not recorded

/// The slots of this DLL. The runtime may allocate one before any constructor runs, so Note needs
/// no more than constant initialisation. This is the first static object to be constructed and
/// hence the last to be destroyed.
class ThreadSlots {
 public:
  constexpr ThreadSlots() noexcept = default;
  ~ThreadSlots() {
    while (m_count > 0) {
      ::TlsFree(m_slots[--m_count]);
    }
  }
  ThreadSlots(const ThreadSlots&) = delete;
  ThreadSlots& operator=(const ThreadSlots&) = delete;

  void Note(DWORD slot) noexcept {
    const LONG place = ::InterlockedIncrement(&m_count) - 1;
    if (place < kMaxSlots) {
      m_slots[place] = slot;
    } else {
      ::InterlockedDecrement(&m_count);
    }
  }

 private:
  DWORD m_slots[kMaxSlots] = {};
  LONG m_count = 0;
};

ThreadSlots theSlots __attribute__((init_priority(101)));

DWORD WINAPI AllocateSlot() {
  const auto take = reinterpret_cast<DWORD(WINAPI*)()>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "TlsAlloc")));
  const DWORD slot = take();
  if (slot != TLS_OUT_OF_INDEXES) {
    theSlots.Note(slot);
  }
  return slot;
}

}  // namespace

// Replaces the import of TlsAlloc for all code in this DLL. Its symbol has the decoration of the
// architecture.
#ifdef _WIN64
#define IMPORTED_TLS_ALLOC "__imp_TlsAlloc"
#else
#define IMPORTED_TLS_ALLOC "__imp__TlsAlloc@0"
#endif
extern "C" {
DWORD(WINAPI* g_importedTlsAlloc)() __asm__(IMPORTED_TLS_ALLOC) = &AllocateSlot;
}

}  // namespace qm::com
