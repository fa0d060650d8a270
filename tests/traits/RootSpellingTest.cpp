#include "traits/RootSpelling.h"

#include "tests/support/Testing.h"
#include "traits/ProjectTraitsMSI.h"
#include "traits/ProjectTraitsPro.h"

namespace qm::tests {

namespace {

TEST(RootSpellingTest, EachKindOfProjectSpellsTheFoldersThatItKnows) {
  const struct {
    const wchar_t* property;
    const wchar_t* msi;
    const wchar_t* pro;
  } cases[] = {
      {L"SystemFolder", L"[SystemFolder]", L"<WINSYSDIR>"},
      {L"WindowsFolder", L"[WindowsFolder]", L"<WINDIR>"},
      {L"ProgramFilesFolder", L"[ProgramFilesFolder]", L"<PROGRAMFILES>"},
      {L"CommonFilesFolder", L"[CommonFilesFolder]", L"<COMMONFILES>"},
      {L"System64Folder", L"[System64Folder]", L"<WINSYSDIR64>"},
      {L"ProgramFiles64Folder", L"[ProgramFiles64Folder]", L"<PROGRAMFILES64>"},
      {L"CommonFiles64Folder", L"[CommonFiles64Folder]", L"<COMMONFILES64>"},
      {L"FontsFolder", L"[FontsFolder]", L"<FOLDER_FONTS>"},
      {L"SendToFolder", L"[SendToFolder]", L"<SendToFolder>"},
      {L"DesktopFolder", L"[DesktopFolder]", L"<DesktopFolder>"},
      {L"TARGETDIR", L"[TARGETDIR]", L"<TARGETDIR>"},
      {L"AppDataFolder", L"[AppDataFolder]", L""},
      {L"OWNDIR", L"", L""},
      {L"systemfolder", L"", L""},
      {L"", L"", L""},
  };
  const traits::ProjectTraitsMSI msi;
  const traits::ProjectTraitsPro pro;
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(std::wstring(c.property)));
    EXPECT_EQ(c.msi, traits::SpellRoot(msi, c.property));
    EXPECT_EQ(c.pro, traits::SpellRoot(pro, c.property));
  }
}

}  // namespace

}  // namespace qm::tests
