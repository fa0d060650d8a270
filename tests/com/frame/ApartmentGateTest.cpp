#include <atomic>
#include <thread>

#include "com/frame/ApartmentGate.h"
#include "com/frame/ApartmentPtr.h"
#include "tests/support/Testing.h"

namespace {

TEST(ApartmentGate, AWaitEndsWithAFailureThatIsDescribed) {
  ApartmentGate gate(1000);
  gate.Enter();
  gate.Enter();
  EXPECT_TRUE(gate.TryEnter()) << "the owner passes as often as it likes";
  std::thread([&] {
    EXPECT_FALSE(gate.TryEnter());
    const com_exception failure = FailureOf([&] { gate.Enter(); });
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_TIMEOUT), failure.hr);
    EXPECT_EQ(
        failure.description,
        L"Other threads of this process have been using the catalog for more than 1 seconds.");
  }).join();
  for (int i = 0; i < 3; ++i) {
    gate.Leave();
  }
  std::thread([&] {
    EXPECT_TRUE(gate.TryEnter());
    gate.Leave();
  }).join();
}

TEST(ApartmentGate, OneThreadAtATimePassesAndNobodyIsKeptWaiting) {
  ApartmentGate gate(10000);
  std::atomic<int> inside = 0;
  int passes = 0;
  std::thread threads[4];
  for (std::thread& thread : threads) {
    thread = std::thread([&] {
      for (int i = 0; i < 200; ++i) {
        gate.Enter();
        EXPECT_EQ(1, ++inside);
        ++passes;
        --inside;
        gate.Leave();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(800, passes);
}

/// Counts its references, and keeps the thread that gave the last one up.
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

TEST(ApartmentPtr, TheObjectIsUsedAndReleasedByItsOwnThread) {
  Counted object;
  {
    CApartmentPtr<IUnknown> pointer;
    pointer.Set(&object);
    EXPECT_EQ(&object, pointer.Get());
    std::thread([&] {
      EXPECT_EQ(nullptr, pointer.Get());
      Counted other;
      pointer.Set(&other);
      EXPECT_EQ(&other, pointer.Get());
      ReleaseReturnedReferences();
      EXPECT_EQ(1u, object.references) << "another thread released it";
      pointer.Set(&object);
      EXPECT_EQ(0u, other.references);
    }).join();
    ReleaseReturnedReferences();
    EXPECT_EQ(1u, object.references);
    EXPECT_EQ(::GetCurrentThreadId(), object.releaser);
  }
  EXPECT_EQ(0u, object.references) << "the thread that it belonged to has ended";
}

}  // namespace
