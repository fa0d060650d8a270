#include "com/error/Raise.h"

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

template <class Base>
bool RaisedIsCaughtAs() {
  try {
    com::RaiseHResult(E_FAIL);
  } catch (Base* caught) {
    static_cast<com::CComException*>(caught)->Delete();
    return true;
  } catch (...) {
    return false;
  }
}

TEST(RaiseTest, ThrowsAnObjectThatEveryBaseCatches) {
  const long blocks = heap::Live();
  EXPECT_TRUE(RaisedIsCaughtAs<com::CComException>());
  EXPECT_TRUE(RaisedIsCaughtAs<com::_CComException<int>>());
  EXPECT_TRUE(RaisedIsCaughtAs<com::CException>());
  EXPECT_TRUE(RaisedIsCaughtAs<com::CObject>());
  EXPECT_TRUE(RaisedIsCaughtAs<void>());
  EXPECT_EQ(blocks, heap::Live());
  EXPECT_NO_THROW(com::RaiseIfFailed(S_FALSE));
}

}  // namespace

}  // namespace qm::tests
