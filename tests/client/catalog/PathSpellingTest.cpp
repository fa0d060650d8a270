#include "client/catalog/PathSpelling.h"

#include <windows.h>
#include <gtest/gtest.h>

namespace qm::tests {

namespace {

TEST(PathSpellingTest, PathsInAMessageAreThoseOfTheHostUnderWine) {
  if (!::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")) {
    GTEST_SKIP() << "there is no host system";
  }
  const struct {
    const char* windows;
    const char* native;
  } messages[] = {
      {R"(Open(Z:\no where\b.msm))", "Open(/no where/b.msm)"},
      {R"(Z:\a\b.msm, Z:\c\ä.msm differ)", "/a/b.msm, /c/ä.msm differ"},
      {R"("z:\b.msm": the key x\y)", R"("/b.msm": the key x\y)"},
      {R"(Z:\)", "/"},
      {R"(\\?\C:)", R"(\\?\C:)"},
      {R"(label:\a, Z:)", R"(label:\a, Z:)"},
      {"", ""},
  };
  for (const auto& [windows, native] : messages) {
    EXPECT_EQ(native, mmcat::SpellPathsIn(windows));
  }
  EXPECT_EQ("/dev/a b", mmcat::SpellPath("Z:\\DEV\\a b"))
      << "the letter case is that of the folder";
  EXPECT_EQ("%X%\\a", mmcat::SpellPath("%X%\\a"));
  EXPECT_EQ("/no/where", mmcat::SpellPath(R"(\\?\Z:\no\where)"));
  EXPECT_STREQ(L"Z:\\no\\where", mmcat::ToSystemPath("/no/where").c_str());
  EXPECT_STREQ(L"a/b", mmcat::ToSystemPath("a/b").c_str());

  mmcat::UsePathSpelling(mmcat::PathSpelling::Windows);
  EXPECT_EQ("Z:\\a\\b", mmcat::SpellPath("Z:\\a\\b"));
  EXPECT_EQ("Z:\\a\\b", mmcat::SpellPath(R"(\\?\Z:\a\b)"));
  mmcat::UsePathSpelling(mmcat::PathSpelling::Native);
}

}  // namespace

}  // namespace qm::tests
