#include "com/frame/ApartmentGate.h"

#include <atomic>
#include <thread>

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(ApartmentGateTest, AWaitThatTakesTooLongFailsWithADescription) {
  com::ApartmentGate gate(1000);
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

TEST(ApartmentGateTest, OneThreadAtATimePassesAndNoneStarves) {
  com::ApartmentGate gate(10000);
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

}  // namespace

}  // namespace qm::tests
