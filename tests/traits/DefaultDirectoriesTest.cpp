#include "traits/DefaultDirectories.h"

#include "tests/support/Testing.h"
#include "traits/ProjectTraitsMSI.h"
#include "traits/ProjectTraitsPro.h"

namespace qm::tests {

namespace {

TEST(DefaultDirectoriesTest, EachPredefinedFolderHasItsDefaultDirectory) {
  const struct {
    const wchar_t *key, *fallback, *expected;
  } cases[] = {
      {L"AdminToolsFolder", L"", L"Admint~1|AdminTools"},
      {L"ProgramFilesFolder", L"mine", L"Progra~1|Program Files"},
      {L"RecentFolder", L"", L"Recent"},
      {L"IISROOTFOLDER", L"", L"IISRoo~1|IISRootFolder"},
      {L"programfilesfolder", L"mine", L"mine"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(traits::GetDefaultDir(c.key, c.fallback), c.expected);
  }
  const com_exception failure = FailureOf([] { traits::GetDefaultDir(L"Nowhere", L""); });
  EXPECT_EQ(static_cast<HRESULT>(0x800403ED), failure.hr);
  EXPECT_NE(std::wstring_view::npos, std::wstring_view(failure.description).find(L"Nowhere"));
}

TEST(DefaultDirectoriesTest, ReferencesHaveTheDelimitersOfTheProject) {
  const traits::ProjectTraitsMSI msi;
  const traits::ProjectTraitsPro pro;
  EXPECT_EQ(traits::PredefinedFolderReference(L"USERPROFILE", msi), L"[USERPROFILE]");
  EXPECT_EQ(traits::PredefinedFolderReference(L"USERPROFILE", pro), L"<USERPROFILE>");
  EXPECT_EQ(traits::PredefinedFolderReference(L"IISROOTFOLDER", msi), L"");
  EXPECT_EQ(traits::PredefinedFolderReference(L"Nowhere", msi), L"");
}

}  // namespace

}  // namespace qm::tests
