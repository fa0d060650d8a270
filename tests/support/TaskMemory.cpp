#include "tests/support/TaskMemory.h"

#include <windows.h>
#include <objidl.h>

namespace qm::tests {

namespace {

long s_blocks = 0;

/// Lives as long as the process.
class TaskMemorySpy final : public IMallocSpy {
 public:
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    *out = iid == __uuidof(IUnknown) || iid == __uuidof(IMallocSpy) ? this : nullptr;
    return *out ? S_OK : E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD_(SIZE_T, PreAlloc)(SIZE_T size) override { return size; }
  STDMETHOD_(void*, PostAlloc)(void* block) override {
    s_blocks += block != nullptr;
    return block;
  }
  STDMETHOD_(void*, PreFree)(void* block, BOOL spied) override {
    s_blocks -= spied && block;
    return block;
  }
  STDMETHOD_(void, PostFree)(BOOL) override {}
  STDMETHOD_(SIZE_T, PreRealloc)(void* block, SIZE_T size, void** toRealloc, BOOL) override {
    *toRealloc = block;
    return size;
  }
  STDMETHOD_(void*, PostRealloc)(void* block, BOOL) override { return block; }
  STDMETHOD_(void*, PreGetSize)(void* block, BOOL) override { return block; }
  STDMETHOD_(SIZE_T, PostGetSize)(SIZE_T size, BOOL) override { return size; }
  STDMETHOD_(void*, PreDidAlloc)(void* block, BOOL) override { return block; }
  STDMETHOD_(int, PostDidAlloc)(void*, BOOL, int answer) override { return answer; }
  STDMETHOD_(void, PreHeapMinimize)() override {}
  STDMETHOD_(void, PostHeapMinimize)() override {}
};

}  // namespace

void CountTaskMemory() {
  static TaskMemorySpy s_spy;
  void* const setOaNoCache =
      reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryW(L"oleaut32.dll"), "SetOaNoCache"));
  reinterpret_cast<void(WINAPI*)()>(setOaNoCache)();
  ::CoRegisterMallocSpy(&s_spy);
}

long TaskMemoryBlocks() { return s_blocks; }

}  // namespace qm::tests
