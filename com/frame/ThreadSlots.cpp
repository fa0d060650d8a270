#include <windows.h>

// The C++ runtime is linked into each DLL. It takes one of the process's thread-local slots at the
// first throw and never gives it back, so a host that loads and unloads the DLL again and again
// would run out of them: there are 1,088. Hence every slot that code of this DLL takes is noted,
// and freed when the DLL goes.

namespace {

constexpr int kMostSlots = 8;

/// The slots of this DLL. Taking one may be what the runtime does first of all, so that this must
/// work before it is constructed; constructed before all other static objects, it is destroyed
/// after them.
class CThreadSlots {
 public:
  constexpr CThreadSlots() noexcept = default;
  ~CThreadSlots() {
    while (m_count > 0) {
      ::TlsFree(m_slots[--m_count]);
    }
  }
  CThreadSlots(const CThreadSlots&) = delete;
  CThreadSlots& operator=(const CThreadSlots&) = delete;

  void Note(DWORD slot) noexcept {
    const LONG place = ::InterlockedIncrement(&m_count) - 1;
    if (place < kMostSlots) {
      m_slots[place] = slot;
    } else {
      ::InterlockedDecrement(&m_count);
    }
  }

 private:
  DWORD m_slots[kMostSlots] = {};
  LONG m_count = 0;
};

CThreadSlots theSlots __attribute__((init_priority(101)));

DWORD WINAPI TakeSlot() {
  const auto take = reinterpret_cast<DWORD(WINAPI*)()>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "TlsAlloc")));
  const DWORD slot = take();
  if (slot != TLS_OUT_OF_INDEXES) {
    theSlots.Note(slot);
  }
  return slot;
}

}  // namespace

// What is called as TlsAlloc anywhere in this DLL, in place of the import.
extern "C" {
DWORD(WINAPI* g_importedTlsAlloc)() __asm__("__imp__TlsAlloc@0") = &TakeSlot;
}
