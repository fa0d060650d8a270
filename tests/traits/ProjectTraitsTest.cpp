#include "msidb/View.h"
#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"
#include "traits/CurrentTraits.h"
#include "traits/DefaultDirectories.h"
#include "traits/ProjectDatabase.h"
#include "traits/ProjectTraitsMSI.h"
#include "traits/ProjectTraitsManager.h"
#include "traits/ProjectTraitsPro.h"
#include "traits/TargetPath.h"

namespace {

TEST(ProjectTraits, PredefinedFoldersOfBothKinds) {
  struct Case {
    const wchar_t* name;
    bool msiPredefined, msiShell, proPredefined, proShell;
  } const cases[] = {
      {L"StartupFolder", true, true, true, true},
      {L"SendToFolder", true, true, false, false},
      {L"ProgramFilesFolder", true, false, false, false},
      {L"USERPROFILE", true, false, false, false},
      {L"RecentFolder", false, false, false, false},
      {L"FOLDER_FONTS", false, false, true, false},
      {L"WINSYSDIR64", false, false, true, false},
      {L"TARGETDIR", true, false, true, false},
      {L"targetdir", false, false, false, false},
      {L"TARGETDIR ", false, false, false, false},
      {L"", false, false, false, false},
  };
  const ProjectTraitsMSI msi;
  const ProjectTraitsPro pro;
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(std::wstring(c.name)));
    EXPECT_EQ(c.msiPredefined, msi.PredefinedFolderMatch(c.name));
    EXPECT_EQ(c.msiShell, msi.ShellFolderMatch(c.name));
    EXPECT_EQ(c.proPredefined, pro.PredefinedFolderMatch(c.name));
    EXPECT_EQ(c.proShell, pro.ShellFolderMatch(c.name));
  }
}

/// Calls an operation by its place in the virtual table, as other components do.
template <class Result>
Result CallSlot(const ProjectTraits& traits, size_t slot) {
  using Operation = Result(__thiscall*)(const ProjectTraits*);
  void* const* const table = *reinterpret_cast<void* const* const*>(&traits);
  return reinterpret_cast<Operation>(table[slot])(&traits);
}

// Spellings that differ most, on either side of each group of slots.
TEST(ProjectTraits, SpellingsOfBothKindsAreInTheirSlots) {
  struct Case {
    size_t slot;
    const wchar_t* msi;
    const wchar_t* pro;
  } const cases[] = {
      {4, L"[", L"<"},
      {7, L"[INSTALLDIR]", L"<TARGETDIR>"},
      {8, L"[SystemFolder]", L"<WINSYSDIR>"},
      {9, L"[SystemFolder]", L"Windows System"},
      {15, L"[CommonFilesFolder]", L"Common Files"},
      {16, L"", L"<SUPPORTDIR>"},
      {17, L"", L"<QMRUNTIMETEXTSUBS>"},
      {23, L"[DesktopFolder]", L"<DesktopFolder>"},
  };
  const ProjectTraitsMSI msi;
  const ProjectTraitsPro pro;
  for (const Case& c : cases) {
    EXPECT_EQ(CallSlot<CWideString>(msi, c.slot), c.msi) << c.slot;
    EXPECT_EQ(CallSlot<CWideString>(pro, c.slot), c.pro) << c.slot;
  }
  EXPECT_EQ(L'[', CallSlot<wchar_t>(msi, 2));
  EXPECT_EQ(L'>', CallSlot<wchar_t>(pro, 3));
  EXPECT_EQ(2, CallSlot<int>(msi, 24));
  EXPECT_EQ(4, CallSlot<int>(pro, 24));
}

TEST(ProjectTraits, TheActiveProjectDecidesAnewAtEveryCall) {
  for (const auto& [type, delimiter] : {std::pair(L"0", L"["), {L"1", L"<"}, {nullptr, L"["}}) {
    ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", type);
    EXPECT_EQ(current_traits::OpenDelimiter(), delimiter);
    EXPECT_EQ(current_traits::OpenDelimiterChar(), *delimiter);
    EXPECT_EQ(IsScriptProjectActive(), *delimiter == L'<');
    EXPECT_EQ(L'[', TargetPathOptions().brackets->open) << "of installer properties in any case";
  }
  for (const wchar_t* const unknown : {L"2", L"7", L"-1", L"-2147483648"}) {
    ::SetEnvironmentVariableW(L"QM_PROJECT_TYPE", unknown);
    EXPECT_THROW(current_traits::InstallDirProperty(), CMemoryException*);
    EXPECT_FALSE(IsScriptProjectActive());
  }
}

TEST(DefaultDirectories, ByPredefinedFolder) {
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
    EXPECT_EQ(DefaultDirOf(c.key, c.fallback), c.expected);
  }
  const com_exception failure = FailureOf([] { DefaultDirOf(L"Nowhere", L""); });
  EXPECT_EQ(static_cast<HRESULT>(0x800403ED), failure.hr);
  EXPECT_NE(std::wstring_view::npos, std::wstring_view(failure.description).find(L"Nowhere"));
}

TEST(DefaultDirectories, ReferencesAreDelimitedAsTheProjectDoes) {
  const ProjectTraitsMSI msi;
  const ProjectTraitsPro pro;
  EXPECT_EQ(PredefinedFolderReference(L"USERPROFILE", msi), L"[USERPROFILE]");
  EXPECT_EQ(PredefinedFolderReference(L"USERPROFILE", pro), L"<USERPROFILE>");
  EXPECT_EQ(PredefinedFolderReference(L"IISROOTFOLDER", msi), L"");
  EXPECT_EQ(PredefinedFolderReference(L"Nowhere", msi), L"");
}

TEST(ProjectDatabase, TheTypeIsComparedExactly) {
  const struct {
    const wchar_t* type;
    bool installer, module;
  } cases[] = {
      {L"MSIE", true, false}, {L"MSM", false, true},   {L"MSIE ", false, false},
      {L"msm", false, false}, {nullptr, false, false},
  };
  for (const auto& c : cases) {
    TestDatabase test;
    EXPECT_FALSE(msidb::IsInstallerProject(test.database)) << "without the table";
    test.Run(
        L"CREATE TABLE `Quillmark` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR PRIMARY "
        L"KEY `Property`)");
    test.Insert(L"Quillmark", {L"Other", L"MSIE"});
    if (c.type) {
      test.Insert(L"Quillmark", {L"Type", c.type});
    }
    EXPECT_EQ(c.installer, msidb::IsInstallerProject(test.database));
    EXPECT_EQ(c.module, msidb::IsMergeModuleProject(test.database));
  }
}

}  // namespace
