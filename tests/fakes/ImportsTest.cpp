#include "tests/fakes/Imports.h"

#include <gtest/gtest.h>

#include "msidb/MsiHandle.h"

namespace {

TEST(ImportsTest, AnswersAndCallsAreForgottenWhenTheWatchEnds) {
  {
    const CWatchedInstaller installer;
    installer::Answer("MsiCreateRecord", 0, 1);
    EXPECT_TRUE(CMsiHandle(::MsiCreateRecord(1)));
    EXPECT_FALSE(CMsiHandle(::MsiCreateRecord(1)));
    EXPECT_EQ(2, CallCount("MsiCreateRecord"));
  }
  EXPECT_TRUE(CMsiHandle(::MsiCreateRecord(1)));
  EXPECT_EQ(0, CallCount("MsiCreateRecord"));
}

}  // namespace
