#include <gtest/gtest.h>

#include "idl/siblings.h"
#include "tests/support/ComDll.h"
#include "tests/support/Component.h"
#include "tests/support/TestFolder.h"

namespace {

DWORD NextFreeSlot() {
  const DWORD slot = ::TlsAlloc();
  ::TlsFree(slot);
  return slot;
}

/// A component may be loaded and unloaded as often as its host likes, although the C++ runtime
/// within it takes a thread-local slot each time.
TEST(ComponentLifetime, NoThreadSlotIsLostWhenComponentsAreUnloaded) {
  const CComThread com;
  const struct {
    const wchar_t* dll;
    CLSID clsid;
  } components[] = {{L"Gleaner.dll", CLSID_IniReader},
                    {L"QmAppServices.dll", CLSID_ApplicationServices},
                    {L"Corvane8.dll", CLSID_RepositoryMgr}};
  const DWORD freeSlot = NextFreeSlot();
  for (int round = 0; round < 100; ++round) {
    for (const auto& [dll, clsid] : components) {
      const CComDll component((ProgramFolder() / dll).wstring());
      ASSERT_TRUE(component.Create<IUnknown>(clsid));
    }
    ASSERT_EQ(freeSlot, NextFreeSlot()) << round;
  }
}

}  // namespace
