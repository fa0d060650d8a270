#include "common/UniqueHandle.h"

#include <vector>

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

std::vector<int> g_closed;

struct CountingTraits {
  using Handle = int;
  static constexpr int None() noexcept { return -1; }
  static void Close(int handle) noexcept {
    g_closed.push_back(handle);
    ::SetLastError(ERROR_INVALID_HANDLE);
  }
};

TEST(UniqueHandleTest, ClosesEachHandleOnce) {
  using Closed = std::vector<int>;
  {
    common::UniqueHandle<CountingTraits> none, first(0), second(std::move(first)), target(1);
    EXPECT_FALSE(none);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved-from handle is empty
    EXPECT_TRUE(second);
    target = std::move(second);
    EXPECT_EQ(g_closed, Closed{1});
    auto& itself = target;
    target = std::move(itself);
    EXPECT_EQ(0, target.Get());
    *target.Put() = 2;
    EXPECT_EQ(g_closed, (Closed{1, 0}));
    target.Reset(3);
    EXPECT_EQ(g_closed, (Closed{1, 0, 2}));
    none.Reset(4);
    EXPECT_EQ(4, none.Release());
  }
  EXPECT_EQ(g_closed, (Closed{1, 0, 2, 3}));

  ::SetLastError(ERROR_SHARING_VIOLATION);
  common::UniqueHandle<CountingTraits>(5).Reset();
  const DWORD code = ::GetLastError();
  EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, code) << "closing changed the code";
}

}  // namespace

}  // namespace qm::tests
