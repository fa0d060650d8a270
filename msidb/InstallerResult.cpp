#include "msidb/InstallerResult.h"

#include "com/error/Raise.h"
#include "com/error/win32_exception.h"
#include "common/ComPtr.h"
#include "common/SystemMessage.h"
#include "msidb/MsiHandle.h"
#include "msidb/TextReader.h"

namespace qm::msidb {

namespace {

/// Formats an error record: field 1 is the error number, its arguments follow from field 2.
constexpr wchar_t kRecordTemplate[] = L"Windows Installer Error [1]: [2]{, [3]}{, [4]}{, [5]}\n";

common::WideString FormatErrorRecord(MSIHANDLE record) {
  common::WideString text;
  ReadInstallerText<1024>(
      text,
      [&](wchar_t* buffer, DWORD* length) { return ::MsiFormatRecordW(0, record, buffer, length); },
      [](DWORD length) { return length + 1; });
  return text;
}

common::WideString FormatDescription(MSIHANDLE errorRecord, HRESULT hr) {
  if (errorRecord) {
    return FormatErrorRecord(errorRecord);
  }
  const common::UniqueLocalText text = common::FormatSystemMessage(static_cast<DWORD>(hr));
  return text ? common::WideString(text.Get()) : common::WideString();
}

common::WideString FormatCall(const wchar_t* functionName, const wchar_t* argument1,
                              const wchar_t* argument2) {
  if (*argument1 == L'\0') {
    return common::WideString::Format(L"%s()", functionName);
  }
  if (*argument2 == L'\0') {
    return common::WideString::Format(L"%s(%s)", functionName, argument1);
  }
  return common::WideString::Format(L"%s(%s, %s)", functionName, argument1, argument2);
}

/// Sets the thread's error object to one with the description `message`. Raises failures of the
/// system's calls.
void SetErrorObject(const common::WideString& message) {
  common::ComPtr<ICreateErrorInfo> create;
  com::RaiseIfFailed(::CreateErrorInfo(create.Put()));
  create->SetGUID(GUID_NULL);  // not every system initialises it
  // The interface takes a non-const text but does not change it.
  com::RaiseIfFailed(create->SetDescription(const_cast<wchar_t*>(message.c_str())));
  common::ComPtr<IErrorInfo> info;
  com::RaiseIfFailed(create.QueryInterface(info.Put()));
  com::RaiseIfFailed(::SetErrorInfo(0, info.Get()));
}

HRESULT ToFailedHResult(UINT code) noexcept {
  const HRESULT hr = HResultFromCode(code);
  return SUCCEEDED(hr) ? E_UNEXPECTED : hr;
}

[[noreturn]] void RaiseFailure(UINT code, MSIHANDLE errorRecord, const wchar_t* functionName,
                               const wchar_t* argument1, const wchar_t* argument2,
                               int viewErrorDetail) {
  const HRESULT hr = ToFailedHResult(code);
  SetErrorObject(FormatDescription(errorRecord, hr) +
                 FormatCall(functionName, argument1, argument2));
  com::RaiseHResult(viewErrorDetail == MSIDBERROR_DUPLICATEKEY ? kDuplicatePrimaryKey : hr);
}

}  // namespace

UINT ReportInstallerResult(UINT code, const wchar_t* functionName, const wchar_t* argument1,
                           const wchar_t* argument2, int viewErrorDetail) {
  if (code == ERROR_SUCCESS) {
    return code;
  }
  // This must come first: the next installer call replaces the thread's record.
  const MsiHandle errorRecord(::MsiGetLastErrorRecord());
  if (errorRecord && ::MsiRecordIsNull(errorRecord.Get(), 0)) {
    const UINT templateCode = ::MsiRecordSetStringW(errorRecord.Get(), 0, kRecordTemplate);
    if (templateCode != ERROR_SUCCESS) {
      RaiseFailure(templateCode, 0, L"MsiRecordSetString", L"", L"", 0);
    }
  }
  RaiseFailure(code, errorRecord.Get(), functionName, argument1, argument2, viewErrorDetail);
}

void RaiseFileFailure(UINT code, const common::WideString& cause, const wchar_t* functionName,
                      const wchar_t* argument1) {
  const HRESULT hr = ToFailedHResult(code);
  const common::WideString description = cause.empty() ? FormatDescription(0, hr) : cause + L" ";
  SetErrorObject(description + FormatCall(functionName, argument1, L""));
  com::RaiseHResult(hr);
}

}  // namespace qm::msidb
