#include "tests/fakes/Imports.h"

#include <gtest/gtest.h>

#include "msidb/MsiHandle.h"

namespace qm::tests {

namespace {

TEST(ImportsTest, AnswersAndCallsAreForgottenWhenTheWatchEnds) {
  {
    const WatchedInstaller installer;
    installer::Answer("MsiCreateRecord", 0, 1);
    EXPECT_TRUE(msidb::MsiHandle(::MsiCreateRecord(1)));
    EXPECT_FALSE(msidb::MsiHandle(::MsiCreateRecord(1)));
    EXPECT_EQ(2, CallCount("MsiCreateRecord"));
  }
  EXPECT_TRUE(msidb::MsiHandle(::MsiCreateRecord(1)));
  EXPECT_EQ(0, CallCount("MsiCreateRecord"));
}

}  // namespace

}  // namespace qm::tests
