#include "msidb/DirectoryName.h"

#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

#define SUFFIX L".0123456789ABCDEF0123456789ABCDEF"

TEST(DirectoryNameTest, ADefaultDirHasUpToFourNames) {
  const struct {
    const wchar_t *defaultDir, *longName, *shortName, *sourceLong, *sourceShort;
  } cases[] = {
      {L"a|b:c|d", L"b", L"a", L"d", L"c"},
      {L"Progra~1|Program Files", L"Program Files", L"Progra~1", L"Program Files", L"Progra~1"},
      {L"plain", L"plain", L"plain", L"plain", L"plain"},
      {L".:x", L".", L".", L"x", L"x"},
      {L"a:b:c", L"a", L"a", L"b:c", L"b:c"},
      {L"a|b|c", L"b|c", L"a", L"b|c", L"a"},
      {L":", L"", L"", L"", L""},
      {L"|", L"", L"", L"", L""},
      {L"a:", L"a", L"a", L"", L""},
      {L"", L"", L"", L"", L""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(std::wstring(c.defaultDir)));
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, {}), c.longName);
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, {false, true}), c.shortName);
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, {true, false}), c.sourceLong);
    EXPECT_EQ(msidb::SplitDefaultDir(c.defaultDir, {true, true}), c.sourceShort);
  }
}

TEST(DirectoryNameTest, SuffixesHaveTheLengthOfAGuid) {
  for (size_t length = 0; length < 40; ++length) {
    EXPECT_EQ(length == 32 || length == 36, msidb::ModuleSuffixMatch(std::wstring(length, L'x')));
  }
  EXPECT_EQ(msidb::StripModuleSuffix(L"INSTALLDIR" SUFFIX), L"INSTALLDIR");
  EXPECT_EQ(msidb::StripModuleSuffix(L"a.b.01234567_89AB_CDEF_0123_456789ABCDEF"), L"a.b");
  EXPECT_EQ(msidb::StripModuleSuffix(L"INSTALLDIR" SUFFIX L"x"), L"INSTALLDIR" SUFFIX L"x");
}

}  // namespace

}  // namespace qm::tests
