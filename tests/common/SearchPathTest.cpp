#include "common/SearchPath.h"

#include "common/Path.h"
#include "tests/support/Testing.h"

namespace qm::tests {

namespace {

TEST(SearchPathTest, EntriesBecomeFullPaths) {
  using List = std::vector<common::WideString>;
  ::SetEnvironmentVariableW(L"QM_TEST_FOLDER", L"C:\\x, y");
  ::SetEnvironmentVariableW(L"QM_TEST_EMPTY", L"");
  struct Case {
    const wchar_t* path;
    List entries;
    List folders;
  } const cases[] = {
      {L" ,\t, ", {}, {}},
      {L",\tb , a c,,b",
       {L"b", L"a c", L"b"},
       {common::ResolveFullPath(L"b"), common::ResolveFullPath(L"a c"),
        common::ResolveFullPath(L"b")}},
      {L"Q:\\a;b,Q:/c/", {L"Q:\\a;b", L"Q:/c/"}, {L"Q:\\a;b", L"Q:\\c"}},
      {L"%QM_TEST_FOLDER%\\z,Q:\\", {L"%QM_TEST_FOLDER%\\z", L"Q:\\"}, {L"C:\\x, y\\z", L"Q:\\"}},
      {L"%QM_TEST_EMPTY%,100%", {L"%QM_TEST_EMPTY%", L"100%"}, {common::ResolveFullPath(L"100%")}},
      {LR"(\\,//,\\?\,\\?\Q:\a,\\?\Q:\)",
       {LR"(\\)", L"//", LR"(\\?\)", LR"(\\?\Q:\a)", LR"(\\?\Q:\)"},
       {L"Q:\\a", L"Q:\\"}},
      {LR"(\\?\unc\s\h\a\,\\?\Volume{1}\a)",
       {LR"(\\?\unc\s\h\a\)", LR"(\\?\Volume{1}\a)"},
       {LR"(\\s\h\a)", LR"(\\?\Volume{1}\a)"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.entries, common::SplitCommaList(c.path)) << c.path;
    EXPECT_EQ(c.folders, common::ExpandSearchPath(c.path)) << c.path;
  }
}

}  // namespace

}  // namespace qm::tests
