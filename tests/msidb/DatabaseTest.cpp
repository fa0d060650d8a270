#include "msidb/Database.h"

#include <algorithm>
#include <functional>

#include "msidb/SummaryInfo.h"
#include "tests/support/InstallerFixture.h"
// Needs the installer's headers first.
#include <msidefs.h>

namespace qm::tests {

namespace {

using DatabaseTest = InstallerFixture;

TEST_F(DatabaseTest, APathThatIsTooLongIsNotPassedToTheInstaller) {
  const common::WideString longest(L"C:\\" + std::wstring(MAX_PATH - 4, L'm'));
  installer::Answer("MsiOpenDatabaseW", ERROR_OPEN_FAILED);
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_OPEN_FAILED),
            FailureOf([&] { msidb::Database::OpenReadOnly(longest); }).hr);
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE),
            FailureOf([&] { msidb::Database::OpenReadOnly(longest + L"m"); }).hr);
  EXPECT_EQ(1, CallCount("MsiOpenDatabaseW"));
}

TEST_F(DatabaseTest, EveryFailureIsRaisedWithItsCall) {
  struct Case {
    const char* function;
    UINT answer;
    DWORD code;
    const wchar_t* call;
    std::function<void(Bench&)> work;
  };
  const Case cases[] = {
      {"MsiOpenDatabaseW", 110, 110, L"MsiOpenDatabase(C:\\m.msm)",
       [](Bench&) { msidb::Database::OpenReadOnly(L"C:\\m.msm"); }},
      {"MsiDatabaseOpenViewW", 1615, 1615, L"MsiOpenDatabaseView()",
       [](Bench& b) { b.view.OpenAndFetch(b.database, L"SELECT"); }},
      {"MsiDatabaseOpenViewW", 1615, 1615, L"MsiOpenDatabaseView(a, b)",
       [](Bench& b) { b.view.Open(b.database, L"SELECT", L"a", L"b"); }},
      {"MsiViewExecute", 1627, 1627, L"MsiViewExecute()",
       [](Bench& b) { b.view.OpenTable(b.database, L"T"); }},
      {"MsiViewExecute", 1627, 1627, L"MsiViewExecute(a)",
       [](Bench& b) { b.view.Execute(nullptr, L"a"); }},
      {"MsiViewFetch", 6, 6, L"MsiViewFetch()", [](Bench& b) { b.view.Next(); }},
      {"MsiViewFetch", 259, 259, L"MsiViewFetch()", [](Bench& b) { b.view.NextOrRaise(); }},
      {"MsiViewModify", 1627, 1627, L"MsiViewModify()",
       [](Bench& b) {
         installer::Answer("MsiViewGetErrorW",
                           MSIDBERROR_DUPLICATEKEY);  // not asked: the code is not 13
         b.view.Modify(MSIMODIFY_INSERT, b.record);
       }},
      {"MsiViewGetColumnInfo", 6, 6, L"MsiViewGetColumnInfo()",
       [](Bench& b) { b.view.ColumnInfo(MSICOLINFO_NAMES); }},
      {"MsiRecordGetStringW", 87, 87, L"MsiRecordGetString()",
       [](Bench& b) { b.record.GetString(1); }},
      {"MsiRecordSetStringW", 87, 87, L"MsiRecordSetString()",
       [](Bench& b) { b.record.SetString(1, L"x"); }},
      {"MsiRecordSetInteger", 87, 87, L"MsiRecordSetInteger()",
       [](Bench& b) { b.record.SetInteger(1, 1); }},
      {"MsiRecordClearData", 6, 6, L"MsiRecordClearData()", [](Bench& b) { b.record.Clear(); }},
      {"MsiCreateRecord", 0, 1631, L"MsiCreateRecord()", [](Bench&) { msidb::Record::Create(2); }},
      {"MsiDatabaseImportW", 3, 3, L"MsiDatabaseImport(C:\\f, T.idt)",
       [](Bench& b) { b.database.Import(L"C:\\f", L"T.idt"); }},
      {"MsiDatabaseExportW", 3, 3, L"MsiDatabaseExport(T, T.idt)",
       [](Bench& b) { b.database.Export(L"T", L"C:\\f", L"T.idt"); }},
      {"MsiDatabaseCommit", 5, 5, L"MsiDatabaseCommit()", [](Bench& b) { b.database.Commit(); }},
      {"MsiDatabaseIsTablePersistentW", MSICONDITION_ERROR, 1627,
       L"MsiDatabaseIsTablePersistent(T)", [](Bench& b) { b.database.HasTable(L"T"); }},
      {"MsiGetSummaryInformationW", 110, 110, L"MsiGetSummaryInformation(C:\\m.msm)",
       [](Bench&) { msidb::SummaryInfo(L"C:\\m.msm"); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.call);
    for (const bool hasRecord : {false, true}) {
      {
        Bench bench;
        if (hasRecord) {
          LeaveErrorRecord(L"[2]: ", L"why");
        }
        installer::Answer(c.function, c.answer);
        const com_exception failure = FailureOf([&] { c.work(bench); });
        const HRESULT hr = HRESULT_FROM_WIN32(c.code);
        EXPECT_EQ(hr, failure.hr);
        EXPECT_EQ(failure.description, (hasRecord ? L"why: " : SystemText(hr)) + c.call);
        const auto& calls = installer::Calls();
        const auto call = std::find(calls.rbegin(), calls.rend(), c.function);
        EXPECT_TRUE(call != calls.rbegin() && call[-1] == "MsiGetLastErrorRecord");
      }
      TearDown();
    }
  }
}

TEST_F(DatabaseTest, PersistentAndTemporaryTablesAreFound) {
  Bench bench;
  bench.Run(L"CREATE TABLE `P` (`K` CHAR(72) NOT NULL TEMPORARY PRIMARY KEY `K`) HOLD");
  EXPECT_TRUE(bench.database.HasTable(L"T"));
  EXPECT_TRUE(bench.database.HasTable(L"P"));
  EXPECT_FALSE(bench.database.HasTable(L"Absent"));
}

}  // namespace

}  // namespace qm::tests
