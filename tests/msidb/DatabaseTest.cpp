#include <functional>
#include <tuple>

#include "msidb/Database.h"
#include "msidb/InstallerResult.h"
#include "msidb/Record.h"
#include "msidb/SummaryInfo.h"
#include "msidb/View.h"
#include "tests/fakes/Imports.h"
#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"
// After the installer's headers, on which it depends.
#include <msidefs.h>

using installer::Answer;
using msidb::Database;
using msidb::Record;
using msidb::ReportInstallerResult;
using msidb::SummaryInfo;
using msidb::View;

namespace {

/// A new database with the table T (rows A 1, B 2, C 3), an executed view of it, and a record.
struct Bench : TestDatabase {
  Bench() {
    Run(L"CREATE TABLE `T` (`K` CHAR(72) NOT NULL, `N` SHORT PRIMARY KEY `K`)");
    Run(L"INSERT INTO `T` (`K`, `N`) VALUES ('A', 1)");
    Run(L"INSERT INTO `T` (`K`, `N`) VALUES ('B', 2)");
    Run(L"INSERT INTO `T` (`K`, `N`) VALUES ('C', 3)");
    view.RunTable(database, L"T");
  }

  View view;
  Record record = Record::Create(2);
};

/// Checks after each test that every installer handle was closed.
class Installer : public ::testing::Test {
 protected:
  void TearDown() override {
    installer::Reset();
    EXPECT_EQ(0U, installer::CloseAllHandles()) << "handles left open";
  }

  const CWatchedInstaller m_installer;
};

/// Has the installer keep an error record, as Windows does after a failure. Field 0 is its
/// template, or null.
void LeaveErrorRecord(const wchar_t* layout, const wchar_t* text) {
  CMsiHandle record(::MsiCreateRecord(5));
  ::MsiRecordSetStringW(record.Get(), 0, layout);
  ::MsiRecordSetInteger(record.Get(), 1, 2203);
  ::MsiRecordSetStringW(record.Get(), 2, text);
  ::MsiRecordSetInteger(record.Get(), 4, -5);
  installer::Reset();
  Answer("MsiGetLastErrorRecord", record.Release());  // which is the reporter's to close
}

TEST(WatchedInstaller, AnswersAndCountsForItsLifeOnly) {
  {
    const CWatchedInstaller installer;
    Answer("MsiCreateRecord", 0, 1);
    EXPECT_TRUE(CMsiHandle(::MsiCreateRecord(1)));
    EXPECT_FALSE(CMsiHandle(::MsiCreateRecord(1)));
    EXPECT_EQ(2, CallCount("MsiCreateRecord"));
  }
  EXPECT_TRUE(CMsiHandle(::MsiCreateRecord(1)));
  EXPECT_EQ(0, CallCount("MsiCreateRecord"));
}

// ---- The reporter

TEST_F(Installer, ReportDescribesTheFailureAndTheCall) {
  struct Case {
    DWORD code;
    DWORD hr;
    const wchar_t* argument1;
    const wchar_t* argument2;
    int detail;
    const wchar_t* call;
  };
  const Case cases[] = {
      {5, 0x80070005, L"", L"", 0, L"MsiX()"},
      {5, 0x80070005, L"C:\\a b.msm", L"", 0, L"MsiX(C:\\a b.msm)"},
      {5, 0x80070005, L"a", L"b", 0, L"MsiX(a, b)"},
      {5, 0x80070005, L"", L"b", 0, L"MsiX()"},
      {5, 0x80070005, L"%s%n", L"%d", 0, L"MsiX(%s%n, %d)"},
      {1627, 0x8007065B, L"", L"", 2, L"MsiX()"},
      {0x1FFF1, 0x8007FFF1, L"", L"", 0, L"MsiX()"},
      {0x80004005, 0x80004005, L"", L"", -1, L"MsiX()"},
  };
  for (const Case& c : cases) {
    const com_exception failure = FailureOf(
        [&] { ReportInstallerResult(c.code, L"MsiX", c.argument1, c.argument2, c.detail); });
    const auto hr = static_cast<HRESULT>(c.hr);
    const CWideString text = SystemText(hr);
    EXPECT_EQ(hr, failure.hr);
    EXPECT_EQ(failure.description, (text == L"Unknown error" ? L"" : text) + c.call);
    EXPECT_TRUE(failure.iid == GUID_NULL);
    EXPECT_FALSE(TakeErrorObject());
  }
  installer::Reset();
  EXPECT_EQ(UINT{ERROR_SUCCESS}, ReportInstallerResult(ERROR_SUCCESS, L"MsiX", L"", L"", 1));
  EXPECT_TRUE(installer::Calls().empty());
}

TEST_F(Installer, ReportTakesTheLastErrorRecordForText) {
  const std::wstring longText(3000, L'x');
  const std::tuple<const wchar_t*, const wchar_t*, std::wstring> cases[] = {
      {nullptr, L"C:\\m.msm", L"Windows Installer Error 2203: C:\\m.msm, -5\nMsiX()"},
      {L"[2] ([1])", L"Cannot open", L"Cannot open (2203)MsiX()"},
      {L"[2]", longText.c_str(), longText + L"MsiX()"}};
  for (const auto& [layout, text, description] : cases) {
    LeaveErrorRecord(layout, text);
    EXPECT_EQ(FailureOf([] { ReportInstallerResult(110, L"MsiX"); }).description, description);
    // Any call before would replace the record, and whoever takes it closes it.
    EXPECT_EQ("MsiGetLastErrorRecord", installer::Calls().front());
    EXPECT_EQ("MsiCloseHandle", installer::Calls().back());
  }
  // A failure on the way is reported instead, once.
  LeaveErrorRecord(nullptr, L"text");
  Answer("MsiRecordSetStringW", ERROR_INVALID_HANDLE);
  const com_exception failure = FailureOf([] { ReportInstallerResult(110, L"MsiX", L"a"); });
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE), failure.hr);
  EXPECT_EQ(failure.description, SystemText(failure.hr) + L"MsiRecordSetString()");
  EXPECT_EQ(1, CallCount("MsiGetLastErrorRecord"));
}

// ---- The wrappers

TEST_F(Installer, PathThatIsTooLongIsNotGivenToTheInstaller) {
  const CWideString longest(L"C:\\" + std::wstring(MAX_PATH - 4, L'm'));
  Answer("MsiOpenDatabaseW", ERROR_OPEN_FAILED);
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_OPEN_FAILED),
            FailureOf([&] { Database::OpenReadOnly(longest); }).hr);
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE),
            FailureOf([&] { Database::OpenReadOnly(longest + L"m"); }).hr);
  EXPECT_EQ(1, CallCount("MsiOpenDatabaseW"));
}

TEST_F(Installer, EveryFailureIsRaisedWithItsCall) {
  struct Case {
    const char* function;
    UINT answer;
    DWORD code;
    const wchar_t* call;
    std::function<void(Bench&)> work;
  };
  const Case cases[] = {
      {"MsiOpenDatabaseW", 110, 110, L"MsiOpenDatabase(C:\\m.msm)",
       [](Bench&) { Database::OpenReadOnly(L"C:\\m.msm"); }},
      {"MsiDatabaseOpenViewW", 1615, 1615, L"MsiOpenDatabaseView()",
       [](Bench& b) { b.view.RunAndFetch(b.database, L"SELECT"); }},
      {"MsiDatabaseOpenViewW", 1615, 1615, L"MsiOpenDatabaseView(a, b)",
       [](Bench& b) { b.view.Open(b.database, L"SELECT", L"a", L"b"); }},
      {"MsiViewExecute", 1627, 1627, L"MsiViewExecute()",
       [](Bench& b) { b.view.RunTable(b.database, L"T"); }},
      {"MsiViewExecute", 1627, 1627, L"MsiViewExecute(a)",
       [](Bench& b) { b.view.Execute(nullptr, L"a"); }},
      {"MsiViewFetch", 6, 6, L"MsiViewFetch()", [](Bench& b) { b.view.Next(); }},
      {"MsiViewFetch", 259, 259, L"MsiViewFetch()", [](Bench& b) { b.view.RequireNext(); }},
      {"MsiViewModify", 1627, 1627, L"MsiViewModify()",
       [](Bench& b) {
         Answer("MsiViewGetErrorW", MSIDBERROR_DUPLICATEKEY);  // not asked: the code is not 13
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
      {"MsiCreateRecord", 0, 1631, L"MsiCreateRecord()", [](Bench&) { Record::Create(2); }},
      {"MsiDatabaseImportW", 3, 3, L"MsiDatabaseImport(C:\\f, T.idt)",
       [](Bench& b) { b.database.Import(L"C:\\f", L"T.idt"); }},
      {"MsiDatabaseExportW", 3, 3, L"MsiDatabaseExport(T, T.idt)",
       [](Bench& b) { b.database.Export(L"T", L"C:\\f", L"T.idt"); }},
      {"MsiDatabaseCommit", 5, 5, L"MsiDatabaseCommit()", [](Bench& b) { b.database.Commit(); }},
      {"MsiDatabaseIsTablePersistentW", MSICONDITION_ERROR, 1627,
       L"MsiDatabaseIsTablePersistent(T)", [](Bench& b) { b.database.HasTable(L"T"); }},
      {"MsiGetSummaryInformationW", 110, 110, L"MsiGetSummaryInformation(C:\\m.msm)",
       [](Bench&) { SummaryInfo(L"C:\\m.msm"); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.call);
    for (const bool hasRecord : {false, true}) {
      {
        Bench bench;
        if (hasRecord) {
          LeaveErrorRecord(L"[2]: ", L"why");
        }
        Answer(c.function, c.answer);
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

TEST_F(Installer, FetchingEndsForGood) {
  Bench bench;
  View& view = bench.view;
  EXPECT_FALSE(View().Next());  // without a query there are no rows
  for (const wchar_t* key : {L"A", L"B", L"C"}) {
    ASSERT_TRUE(view.Next());
    EXPECT_EQ(view.Row().GetString(1), key);
  }
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(view.Next());
    EXPECT_FALSE(view.Row());
  }
  EXPECT_EQ(HRESULT_FROM_WIN32(259), FailureOf([&] { view.RequireNext(); }).hr);

  bench.record.SetString(1, L"B");
  view.Open(bench.database, L"SELECT `N` FROM `T` WHERE `K` = ?");
  view.Execute(&bench.record);
  view.RequireNext();
  EXPECT_EQ(2, view.Row().GetInteger(1));
  EXPECT_FALSE(view.RunAndFetch(bench.database, L"SELECT `N` FROM `T` WHERE `K` = 'X'"));
}

TEST_F(Installer, ModifyTellsDuplicateKeysApart) {
  const std::pair<int, HRESULT> details[] = {
      {MSIDBERROR_DUPLICATEKEY, static_cast<HRESULT>(0x800403E8)},
      {MSIDBERROR_REQUIRED, HRESULT_FROM_WIN32(13)}};
  for (const auto& [detail, hr] : details) {
    Bench bench;
    Answer("MsiViewModify", ERROR_INVALID_DATA);
    Answer("MsiViewGetErrorW", static_cast<UINT>(detail));
    const auto modify = [&] { bench.view.Modify(MSIMODIFY_INSERT, bench.record); };
    EXPECT_EQ(hr, FailureOf(modify).hr);
    EXPECT_EQ(FailureOf(modify).description,
              SystemText(HRESULT_FROM_WIN32(13)) + L"MsiViewModify()");
    installer::Reset();

    bench.record.SetString(1, L"D");
    modify();
    const HRESULT real = FailureOf(modify).hr;
    // Not every installer says what is wrong with the row.
    EXPECT_TRUE(real == msidb::kDuplicateKey || real == HRESULT_FROM_WIN32(1627)) << real;
    int rows = 0;
    for (bench.view.RunTable(bench.database, L"T"); bench.view.Next(); ++rows) {
    }
    EXPECT_EQ(4, rows);
  }
}

TEST_F(Installer, HasTable) {
  Bench bench;
  bench.Run(L"CREATE TABLE `P` (`K` CHAR(72) NOT NULL TEMPORARY PRIMARY KEY `K`) HOLD");
  EXPECT_TRUE(bench.database.HasTable(L"T"));
  EXPECT_TRUE(bench.database.HasTable(L"P"));
  EXPECT_FALSE(bench.database.HasTable(L"Absent"));
}

TEST_F(Installer, RecordFields) {
  Record record = Record::Create(2);
  for (const size_t length : {0U, 1U, 2047U, 2048U, 100'000U}) {
    const CWideString text(std::wstring(length, L'\u4e2d'));
    record.SetString(1, text);
    installer::Reset();
    EXPECT_EQ(record.GetString(1), text);
    EXPECT_EQ(length < 2048 ? 1 : 2, CallCount("MsiRecordGetStringW")) << length;
  }
  Answer("MsiRecordGetStringW", ERROR_INVALID_PARAMETER, 1);  // at the second call
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER),
            FailureOf([&] { record.GetString(1); }).hr);
  record.SetInteger(2, -7);
  EXPECT_EQ(-7, record.GetInteger(2));
  EXPECT_FALSE(record.IsNull(2));
  record.Clear();
  EXPECT_TRUE(record.IsNull(2));
  EXPECT_EQ(INT_MIN, record.GetInteger(2));
  EXPECT_EQ(0, Record().GetInteger(1));
}

TEST_F(Installer, SummaryTexts) {
  const std::pair<UINT, size_t> texts[] = {{PID_TITLE, 1},
                                           {PID_SUBJECT, 259},
                                           {PID_AUTHOR, 260},
                                           {PID_KEYWORDS, 261},
                                           {PID_COMMENTS, 10'000}};
  TestDatabase test;
  {
    CMsiHandle handle;
    ASSERT_EQ(0U, ::MsiGetSummaryInformationW(test.database.Get(), nullptr, 10, handle.Put()));
    auto* const set =
        installer::Find<decltype(::MsiSummaryInfoSetPropertyW)>("MsiSummaryInfoSetPropertyW");
    for (const auto& [property, length] : texts) {
      const std::wstring text(length, L'x');
      ASSERT_EQ(0U, set(handle.Get(), property, VT_LPSTR, 0, nullptr, text.c_str()));
    }
    ASSERT_EQ(0U, set(handle.Get(), PID_PAGECOUNT, VT_I4, 200, nullptr, nullptr));
    installer::Find<decltype(::MsiSummaryInfoPersist)>("MsiSummaryInfoPersist")(handle.Get());
    test.CommitAndClose();
  }
  const SummaryInfo summary(test.path.c_str());
  const auto text = [&](UINT property) {
    return msidb::ReadSummaryString(summary.Get(), property);
  };
  for (const auto& [property, length] : texts) {
    EXPECT_EQ(text(property), std::wstring(length, L'x')) << length;
  }
  EXPECT_EQ(text(PID_PAGECOUNT), L"");  // a number
  EXPECT_EQ(text(PID_TEMPLATE), L"");   // missing
  Answer("MsiSummaryInfoGetPropertyW", ERROR_INVALID_HANDLE);
  EXPECT_EQ(text(PID_TITLE), L"x") << "a property of type text counts, whatever the code";
  installer::Reset();
  Answer("MsiSummaryInfoGetPropertyW", ERROR_FUNCTION_FAILED, 1);  // at the second call
  EXPECT_EQ(text(PID_KEYWORDS), std::wstring(261, L'x'));
}

}  // namespace
