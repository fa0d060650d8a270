#include "com/frame/ApartmentPtr.h"

#include <atomic>
#include <thread>

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

/// Counts its references, and records the thread that released the last one.
class Counted final : public IUnknown {
 public:
  STDMETHOD(QueryInterface)(REFIID, void**) override { return E_NOINTERFACE; }
  STDMETHOD_(ULONG, AddRef)() override { return ++references; }
  STDMETHOD_(ULONG, Release)() override {
    releaser = ::GetCurrentThreadId();
    return --references;
  }

  std::atomic<ULONG> references = 0;
  std::atomic<DWORD> releaser = 0;
};

TEST(ApartmentPtrTest, TheObjectIsUsedAndReleasedByItsOwnThread) {
  Counted object;
  {
    com::ApartmentPtr<IUnknown> pointer;
    pointer.Set(&object);
    EXPECT_EQ(&object, pointer.Get());
    std::thread([&] {
      EXPECT_EQ(nullptr, pointer.Get());
      Counted other;
      pointer.Set(&other);
      EXPECT_EQ(&other, pointer.Get());
      com::ReleaseQueuedReferences();
      EXPECT_EQ(1u, object.references) << "another thread released it";
      pointer.Set(&object);
      EXPECT_EQ(0u, other.references);
    }).join();
    com::ReleaseQueuedReferences();
    EXPECT_EQ(1u, object.references);
    EXPECT_EQ(::GetCurrentThreadId(), object.releaser);
  }
  EXPECT_EQ(0u, object.references) << "the thread that it belonged to has ended";
}

}  // namespace

}  // namespace qm::tests
