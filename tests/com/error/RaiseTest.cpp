#include "com/error/Raise.h"

#include "tests/support/Testing.h"

namespace {

template <class Base>
bool RaisedIsCaughtAs() {
  try {
    RaiseHResult(E_FAIL);
  } catch (Base* caught) {
    static_cast<CComException*>(caught)->Delete();
    return true;
  } catch (...) {
    return false;
  }
}

TEST(RaiseTest, ThrowsAnObjectThatEveryBaseCatches) {
  const long blocks = heap::Live();
  EXPECT_TRUE(RaisedIsCaughtAs<CComException>());
  EXPECT_TRUE(RaisedIsCaughtAs<_CComException<int>>());
  EXPECT_TRUE(RaisedIsCaughtAs<CException>());
  EXPECT_TRUE(RaisedIsCaughtAs<CObject>());
  EXPECT_TRUE(RaisedIsCaughtAs<void>());
  EXPECT_EQ(blocks, heap::Live());
  EXPECT_NO_THROW(RaiseIfFailed(S_FALSE));
}

}  // namespace
