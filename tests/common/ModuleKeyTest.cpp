#include "common/ModuleKey.h"

#include "tests/support/Testing.h"

namespace {

TEST(ModuleKeyTest, AKeyIsIdAndLanguage) {
  EXPECT_EQ(MakeModuleKey(L"Ink.0123", 0), L"Ink.0123:0");
  EXPECT_EQ(MakeModuleKey(L"", -1), L":-1");
}

}  // namespace
