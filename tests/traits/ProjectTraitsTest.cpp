#include "traits/ProjectTraits.h"

#include "tests/support/Testing.h"
#include "traits/ProjectTraitsMSI.h"
#include "traits/ProjectTraitsPro.h"

namespace qm::tests {

namespace {

TEST(ProjectTraitsTest, EachKindOfProjectKnowsItsPredefinedFolders) {
  struct Case {
    const wchar_t* name;
    bool msiPredefined, msiShell, proPredefined, proShell;
  } const cases[] = {
      {L"StartupFolder", true, true, true, true},  {L"SendToFolder", true, true, false, false},
      {L"USERPROFILE", true, false, false, false}, {L"FOLDER_FONTS", false, false, true, false},
      {L"TARGETDIR", true, false, true, false},    {L"targetdir", false, false, false, false},
      {L"", false, false, false, false},
  };
  const traits::ProjectTraitsMSI msi;
  const traits::ProjectTraitsPro pro;
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
Result CallSlot(const traits::ProjectTraits& traits, size_t slot) {
  using Operation = Result(__thiscall*)(const traits::ProjectTraits*);
  void* const* const table = *reinterpret_cast<void* const* const*>(&traits);
  return reinterpret_cast<Operation>(table[slot])(&traits);
}

// Spellings that differ most, on either side of each group of slots.
TEST(ProjectTraitsTest, SpellingsOfBothKindsAreInTheirSlots) {
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
  const traits::ProjectTraitsMSI msi;
  const traits::ProjectTraitsPro pro;
  for (const Case& c : cases) {
    EXPECT_EQ(CallSlot<common::WideString>(msi, c.slot), c.msi) << c.slot;
    EXPECT_EQ(CallSlot<common::WideString>(pro, c.slot), c.pro) << c.slot;
  }
  EXPECT_EQ(L'[', CallSlot<wchar_t>(msi, 2));
  EXPECT_EQ(L'>', CallSlot<wchar_t>(pro, 3));
  EXPECT_EQ(2, CallSlot<int>(msi, 24));
  EXPECT_EQ(4, CallSlot<int>(pro, 24));
}

}  // namespace

}  // namespace qm::tests
