#include <fstream>

#include "common/Bstr.h"
#include "image/StreamName.h"
#include "msidb/MsiHandle.h"
#include "tests/fakes/Imports.h"
#include "tests/support/Answers.h"
#include "tests/support/ModuleBuilder.h"
#include "tests/support/ServerFixture.h"
#include "tests/support/UnknownKind.h"

namespace qm::tests {

namespace {

using testing::EndsWith;
using testing::PrintToString;
using testing::StartsWith;

class ModuleTest : public ServerFixture {
 protected:
  Answers ReadTables(const std::vector<TableText>& tables) const {
    BuildModule(m_path, tables);
    return ReadModule(OpenModule(m_path).Get(), Route::VirtualTable);
  }

  std::wstring m_path = m_folder / L"tables.msm";
};

std::string BytesOf(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

const TableText kSignature{L"ModuleSignature", "Me\t1033\t1.0\n"};

TEST_F(ModuleTest, BeforeAModuleIsOpenEverythingFails) {
  for (const Route route : {Route::VirtualTable, Route::Dispatch}) {
    for (const auto& [name, answer] : ReadModule(NewModule().Get(), route)) {
      EXPECT_EQ(L"0x8000FFFF No merge module is open.", answer) << PrintToString(name);
    }
  }
}

TEST_F(ModuleTest, NullPointersAreRefusedOpenOrNot) {
  const std::vector<Member> members = MembersOf(L"IMergeModuleTavik");
  for (const common::ComPtr<IMergeModuleTavik>& module : {NewModule(), OpenRichModule()}) {
    for (size_t slot = 1; slot <= members.size(); ++slot) {
      const Member& member = members[slot - 1];
      if (member.name == L"Origin") {
        EXPECT_EQ(S_OK, CallSlot(module.Get(), slot, nullptr));
      } else if (member.type != VT_I4 && member.type != VT_EMPTY) {
        EXPECT_EQ(E_POINTER, CallSlotWithNull(module.Get(), slot, nullptr)) << slot;
      }
    }
  }
}

TEST_F(ModuleTest, AFileThatIsNoModuleFailsWithItsCauseAndAnotherCanBeOpened) {
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  const Answers rich = ReadModule(module.Get(), Route::VirtualTable);
  const std::string whole = BytesOf(m_rich);
  const auto spoil = [&](const std::string& part) {
    std::string bytes = whole;
    bytes[bytes.find(part) + part.size() - 1] ^= 1;
    return bytes;
  };
  const std::u16string pool = image::EncodeStreamName("_StringPool", image::StreamKind::Table);
  const std::string poolName(reinterpret_cast<const char*>(pool.data()), 2 * pool.size());

  struct Case {
    std::wstring name;
    std::wstring failure;
    std::wstring call = L"MsiOpenDatabase";
    std::string bytes{};  ///< empty for a file that is not written here
  };
  const Case cases[] = {
      {L"missing.msm", L"0x80070002 "},
      {std::wstring(245, L'x') + L".msm", L"0x80070002 "},
      {L"missing\\m.msm", L"0x80070003 "},
      {L"folder.msm", L"0x80070005 The path is that of a folder. "},
      {L"locked.msm", L"0x80070020 "},
      {L"empty.msm", L"0x8007006E The file is empty. "},
      {L"text.msm", L"0x8007006E The file is not an installer database. ", L"MsiOpenDatabase",
       std::string(20000, 't')},
      {L"strings.msm", L"0x8007006E The file is a compound file without the string pool",
       L"MsiOpenDatabase", spoil(poolName)},
      {L"cut.msm", L"0x80070570 The directory leads to sector ", L"MsiOpenDatabase",
       whole.substr(0, 3072)},
      {L"summary.msm", L"0x80070570 The summary information does not begin with its header. ",
       L"MsiGetSummaryInformation", spoil("\xE0\x85\x9F\xF2")},
      {L"unsigned.msm", L"0x8007064F ", L"MsiOpenDatabaseView"}};
  for (const Case& c : cases) {
    if (!c.bytes.empty()) {
      PutFile(m_folder / c.name, c.bytes);
    }
  }
  PutFile(m_folder / L"empty.msm", "");
  std::filesystem::create_directory(m_folder / L"folder.msm");
  BuildModule(m_folder / L"unsigned.msm", {{L"Dialog", "One\t1\n"}});
  ASSERT_TRUE(::CopyFileW(m_rich.c_str(), (m_folder / L"locked.msm").c_str(), TRUE));
  HANDLE writer =
      ::CreateFileW((m_folder / L"locked.msm").c_str(), GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  for (const Case& c : cases) {
    SCOPED_TRACE(PrintToString(c.name));
    const std::wstring path = m_folder / c.name;
    const HRESULT hr = Open(module.Get(), path);
    const std::wstring failure = FailureText(hr, TakeDescription());
    EXPECT_THAT(failure, StartsWith(c.failure));
    const bool isQuery = c.call == L"MsiOpenDatabaseView";
    EXPECT_THAT(failure, EndsWith(c.call + (isQuery ? L"()" : L"(" + path + L")")));
    EXPECT_EQ(path, ReadModule(module.Get(), L"Path"));
    EXPECT_EQ(L"", ReadModule(module.Get(), L"Subject"));
    if (c.call == L"MsiOpenDatabase") {
      for (const wchar_t* const table :
           {L"Dialogs", L"CustomActions", L"Dependencies", L"Exclusions", L"Files"}) {
        EXPECT_EQ(failure, ReadModule(module.Get(), table));
      }
    }
    EXPECT_EQ(S_OK, Open(module.Get(), m_rich));
    EXPECT_EQ(rich, ReadModule(module.Get(), Route::VirtualTable));
  }
  ::CloseHandle(writer);
  EXPECT_TRUE(FAILED(Open(module.Get(), L"")));
  EXPECT_THAT(TakeDescription(), EndsWith(L"MsiOpenDatabase()"));
  EXPECT_TRUE(FAILED(module->Open(nullptr)));
  EXPECT_THAT(TakeDescription(), EndsWith(L"MsiOpenDatabase()"));
}

TEST_F(ModuleTest, PathsMayBeLongOrRelative) {
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  Answers rich = ReadModule(module.Get(), Route::VirtualTable);
  const std::wstring name = std::wstring(245, L'l') + L".msm";
  const std::wstring longPath = m_folder / name;
  ASSERT_LT(size_t{MAX_PATH}, longPath.size());
  ASSERT_TRUE(::CopyFileW(m_rich.c_str(), (L"\\\\?\\" + longPath).c_str(), TRUE));
  wchar_t current[MAX_PATH];
  ::GetCurrentDirectoryW(MAX_PATH, current);
  ASSERT_TRUE(::SetCurrentDirectoryW((m_folder / L"").c_str()));
  for (const std::wstring& path : {longPath, name, std::wstring(L"x\\..\\") + name}) {
    EXPECT_EQ(S_OK, Open(module.Get(), path)) << PrintToString(TakeDescription());
    rich[L"Path"] = longPath;
    EXPECT_EQ(rich, ReadModule(module.Get(), Route::VirtualTable));
  }
  ::SetCurrentDirectoryW(current);
  EXPECT_TRUE(::DeleteFileW((L"\\\\?\\" + longPath).c_str()));
}

TEST_F(ModuleTest, AFileThatIsTruncatedAfterItWasOpenedFailsWithItsCause) {
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  std::filesystem::resize_file(m_rich, 3072);
  EXPECT_THAT(ReadModule(module.Get(), L"Dialogs"),
              StartsWith(L"0x80070570 The directory leads to sector "));
  std::filesystem::resize_file(m_rich, 0);
  EXPECT_THAT(ReadModule(module.Get(), L"Files"), StartsWith(L"0x8007006E The file is empty. "));
  EXPECT_EQ(L"Rich.0A1B:1033", ReadModule(module.Get(), L"Key"));
}

TEST_F(ModuleTest, IdentityAndSummaryAreThoseOfTheFile) {
  const std::string longText(1000, 's');
  const std::wstring wideLongText(1000, L's');
  const struct {
    std::vector<TableText> tables;
    Answers expected;
  } cases[] = {
      {{kSignature},
       {{L"Key", L"Me:1033"},
        {L"DisplayName", m_path},
        {L"Author", L""},
        {L"Dialogs", L""},
        {L"CustomActions", L""},
        {L"Dependencies", L""},
        {L"Exclusions", L""},
        {L"Files", L""}}},
      {{{L"ModuleSignature", ""}},
       {{L"ModuleID", L""}, {L"Key", L":0"}, {L"Language", L"0"}, {L"Version", L""}}},
      {{{L"ModuleSignature", "Me\t0\t1.0\n"}}, {{L"Key", L"Me:0"}}},
      {{{L"ModuleSignature", "Me\t-2\t1.0\n"}}, {{L"Key", L"Me:-2"}, {L"Language", L"-2"}}},
      {{kSignature, {L"_SummaryInformation", "3\t" + longText + "\n6\t" + longText + "\n"}},
       {{L"Subject", wideLongText}, {L"DisplayName", wideLongText}, {L"Comments", wideLongText}}},
      {{{L"_ForceCodepage", "1252\t_ForceCodepage\n"},
        {L"ModuleSignature", "M\xFCnster\t1031\t1.0\n"},
        {L"Dialog", "Gr\xF6\xDFling\t1\n"},
        {L"_SummaryInformation", "1\t1252\n3\tStra\xDFgang\n"}},
       {{L"Key", L"M\u00FCnster:1031"},
        {L"Dialogs", L"Gr\u00F6\u00DFling"},
        {L"Subject", L"Stra\u00DFgang"}}},
  };
  for (const auto& [tables, expected] : cases) {
    const Answers answers = ReadTables(tables);
    for (const auto& [property, text] : expected) {
      EXPECT_EQ(text, answers.at(property)) << PrintToString(property);
    }
  }
}

TEST_F(ModuleTest, OfRowsWithOneKeyTheLastStays) {
  const std::string longName(5000, 'n');
  const struct {
    const wchar_t* collection;
    std::vector<TableText> tables;
    std::wstring expected;
  } cases[] = {
      // Only a row that names the module itself, version included, is left out; of rows with one
      // key the last one stays.
      {L"Dependencies",
       {{L"ModuleDependency",
         "Me\t1033\tMe\t1033\t1.0\n"
         "Other\t1033\tMe\t1033\t2.0\n"
         "Me\t1033\tme\t1033\t1.0\n"
         "Me\t1031\tMe\t1031\t1.0\n"
         "Me\t1033\tTwice\t9\t1.0\n"
         "Other\t1033\tTwice\t9\t2.0\n"}},
       L"Me:1031;Me;1.0;1031 / Me:1033;Me;2.0;1033 / Twice:9;Twice;2.0;9 / me:1033;me;1.0;1033"},
      {L"Dependencies",
       {{L"ModuleDependency", "Me\t1033\tAny\t\t\n"}},
       L"Any:-2147483648;Any;;-2147483648"},
      {L"Exclusions",
       {{L"ModuleExclusion",
         "Me\t1033\tMe\t1033\t1.0\t1.0\n"
         "Me\t1033\tTwice\t0\t1.0\t1.5\n"
         "Other\t1033\tTwice\t0\t\t3.0\n"}},
       L"Me:1033;Me;1.0;1.0;1033 / Twice:0;Twice;;3.0;0"},
      // A missing component leaves the directory empty, and a null number stays one; of files
      // with one key the last in the sequence stays.
      {L"Files",
       {{L"Component", "Shared\t\tDir\n"},
        {L"File",
         "a\tShared\tlate.txt\t2\t\t\t\t2\n"
         "a\tShared2\tsoon.txt\t1\t\t\t\t1\n"
         "b\tLost\tb.txt\t\t\t\t\t\n"
         "c\tShared\t" +
             longName + "\t3\t\t\t\t3\n"}},
       L"Dir;a;2;late.txt;;;2 / ;b;-2147483648;b.txt;;;-2147483648 / Dir;c;3;" +
           std::wstring(5000, L'n') + L";;;3"},
      {L"Files", {{L"File", "a\tLost\ta.txt\t1\t\t\t\t1\n"}}, L";a;1;a.txt;;;1"},
  };
  for (const auto& [collection, tables, expected] : cases) {
    std::vector<TableText> all{kSignature};
    all.insert(all.end(), tables.begin(), tables.end());
    EXPECT_EQ(expected, ReadTables(all).at(collection));
  }
}

TEST_F(ModuleTest, ADamagedTableFailsAlone) {
  for (const TableText& table : {TableText{L"File", "", "File\tComponent_\ns72\ts72\nFile\tFile\n"},
                                 TableText{L"Component", "", "Name\ns72\nComponent\tName\n"}}) {
    SCOPED_TRACE(PrintToString(std::wstring(table.name)));
    BuildModule(m_path, {kSignature, {L"Dialog", "One\t1\n"}, table});
    const common::ComPtr<IMergeModuleTavik> module = OpenModule(m_path);
    Answers first = ReadModule(module.Get(), Route::VirtualTable);
    EXPECT_TRUE(IsFailure(first[L"Files"]));
    EXPECT_THAT(first[L"Files"], EndsWith(L"MsiOpenDatabaseView()"));
    EXPECT_EQ(L"One", first[L"Dialogs"]);
    first[L"Files"].clear();
    EXPECT_EQ(first, ReadModule(module.Get(), Route::VirtualTable));
  }
}

TEST_F(ModuleTest, TheFileIsFreeAfterEveryCall) {
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  const auto expectFree = [](const std::wstring& path) {
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(INVALID_HANDLE_VALUE, file);
    ::CloseHandle(file);
  };
  expectFree(m_rich);
  for (const Member& member : MembersOf(L"IMergeModuleTavik")) {
    if (member.type != VT_EMPTY) {
      SCOPED_TRACE(PrintToString(member.name));
      EXPECT_FALSE(IsFailure(ReadModule(module.Get(), member.name)));
      expectFree(m_rich);
    }
  }
  BuildModule(m_path, {kSignature, {L"File", "", "File\ns72\nFile\tFile\n"}});
  EXPECT_EQ(S_OK, Open(module.Get(), m_path));
  EXPECT_TRUE(IsFailure(ReadModule(module.Get(), L"Files")));
  expectFree(m_path);
}

TEST_F(ModuleTest, TablesAreReadOnceAndNotBeforeTheyAreNeeded) {
  const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  const int afterOpen = CallCount("CreateFileW");
  const std::wstring files = ReadModule(module.Get(), L"Files");
  const int afterFiles = CallCount("CreateFileW");
  EXPECT_LT(afterOpen, afterFiles);

  BuildModule(m_rich, {{L"ModuleSignature", "Another\t1\t1\n"}, {L"Dialog", "New\t1\n"}});
  EXPECT_EQ(files, ReadModule(module.Get(), L"Files"));
  EXPECT_EQ(L"Rich.0A1B:1033", ReadModule(module.Get(), L"Key"));
  EXPECT_EQ(afterFiles, CallCount("CreateFileW"));
  EXPECT_EQ(L"New", ReadModule(module.Get(), L"Dialogs"));

  ASSERT_TRUE(::DeleteFileW(m_rich.c_str()));
  EXPECT_EQ(files, ReadModule(module.Get(), L"Files"));
  const std::wstring failed = ReadModule(module.Get(), L"CustomActions");
  EXPECT_TRUE(IsFailure(failed));
  EXPECT_THAT(failed, EndsWith(L"MsiOpenDatabase(" + m_rich + L")"));
  EXPECT_EQ(L"", ReadModule(module.Get(), L"CustomActions"));
}

TEST_F(ModuleTest, CollectionsAndItemsOutliveTheirModule) {
  common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
  common::ComPtr<IMMFiles> files, sameFiles;
  module->get_Files(files.Put());
  module->get_Files(sameFiles.Put());
  EXPECT_NE(files.Get(), sameFiles.Get());
  sameFiles.Release();
  BuildModule(m_path, {kSignature});
  EXPECT_EQ(S_OK, Open(module.Get(), m_path));
  module.Release();

  common::ComPtr<IMMFile> item;
  EXPECT_EQ(S_OK, files->get_Item(Variant(2), item.Put()));
  common::ComPtr<IEnumVARIANT> enumerator;
  EXPECT_EQ(S_OK, files->get_Enumerator(enumerator.Put()));
  files.Release();
  Variant first, second;
  EXPECT_EQ(S_OK, enumerator->Next(1, &first, nullptr));
  EXPECT_EQ(S_OK, enumerator->Next(1, &second, nullptr));
  enumerator.Release();
  EXPECT_EQ(item.Get(), second.pdispVal);
  EXPECT_EQ(L"DirB.0A1B;AlphaFile;815;ALPHA.TXT|alphafile.txt;ZuluFile;1042;2",
            ReadItem(first.pdispVal, L"IMMFile", Route::Dispatch));
  for (const size_t textSlot : {1, 2, 4, 5, 6}) {
    EXPECT_EQ(S_OK, CallSlot(item.Get(), textSlot, nullptr));
  }
}

UINT WINAPI GetPropertyAsNumber(MSIHANDLE summary, UINT property, UINT* type, INT* number,
                                FILETIME* time, wchar_t* text, DWORD* length) {
  const UINT code =
      ::MsiSummaryInfoGetPropertyW(summary, property, type, number, time, text, length);
  *type = VT_I4;
  return code;
}

TEST_F(ModuleTest, ASummaryPropertyThatIsNoTextIsEmpty) {
  ASSERT_TRUE(ReplaceImport(m_server.Module(), "msi.dll", "MsiSummaryInfoGetPropertyW",
                            reinterpret_cast<void*>(&GetPropertyAsNumber)));
  BuildRichModule(m_rich);
  MakeUnknownKind(m_rich);  // so that the installer is asked
  const common::ComPtr<IMergeModuleTavik> module = OpenModule(m_rich);
  EXPECT_EQ(L"", ReadModule(module.Get(), L"Author"));
  EXPECT_EQ(m_rich, ReadModule(module.Get(), L"DisplayName"));
}

}  // namespace

}  // namespace qm::tests
