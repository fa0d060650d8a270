#include "msidb/InstallerResult.h"

#include <tuple>

#include "tests/support/InstallerFixture.h"

namespace qm::tests {

namespace {

using InstallerResultTest = InstallerFixture;

TEST_F(InstallerResultTest, AFailureIsDescribedWithItsCall) {
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
        [&] { msidb::ReportInstallerResult(c.code, L"MsiX", c.argument1, c.argument2, c.detail); });
    const auto hr = static_cast<HRESULT>(c.hr);
    const common::WideString text = SystemText(hr);
    EXPECT_EQ(hr, failure.hr);
    EXPECT_EQ(failure.description, (text == L"Unknown error" ? L"" : text) + c.call);
    EXPECT_TRUE(failure.iid == GUID_NULL);
    EXPECT_FALSE(TakeErrorObject());
  }
  installer::Reset();
  EXPECT_EQ(UINT{ERROR_SUCCESS}, msidb::ReportInstallerResult(ERROR_SUCCESS, L"MsiX", L"", L"", 1));
  EXPECT_TRUE(installer::Calls().empty());
}

TEST_F(InstallerResultTest, TheLastErrorRecordDescribesTheFailure) {
  const std::wstring longText(3000, L'x');
  const std::tuple<const wchar_t*, const wchar_t*, std::wstring> cases[] = {
      {nullptr, L"C:\\m.msm", L"Windows Installer Error 2203: C:\\m.msm, -5\nMsiX()"},
      {L"[2] ([1])", L"Cannot open", L"Cannot open (2203)MsiX()"},
      {L"[2]", longText.c_str(), longText + L"MsiX()"}};
  for (const auto& [layout, text, description] : cases) {
    LeaveErrorRecord(layout, text);
    EXPECT_EQ(FailureOf([] { msidb::ReportInstallerResult(110, L"MsiX"); }).description,
              description);
    // Any call before would replace the record, and whoever takes it closes it.
    EXPECT_EQ("MsiGetLastErrorRecord", installer::Calls().front());
    EXPECT_EQ("MsiCloseHandle", installer::Calls().back());
  }
  // A failure on the way is reported instead, once.
  LeaveErrorRecord(nullptr, L"text");
  installer::Answer("MsiRecordSetStringW", ERROR_INVALID_HANDLE);
  const com_exception failure = FailureOf([] { msidb::ReportInstallerResult(110, L"MsiX", L"a"); });
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE), failure.hr);
  EXPECT_EQ(failure.description, SystemText(failure.hr) + L"MsiRecordSetString()");
  EXPECT_EQ(1, CallCount("MsiGetLastErrorRecord"));
}

}  // namespace

}  // namespace qm::tests
