#include "msidb/Record.h"

#include "msidb/InstallerResult.h"
#include "msidb/TextReader.h"

namespace qm::msidb {

static_assert(common::kNullInteger == static_cast<int>(MSI_NULL_INTEGER));

Record Record::Create(UINT fieldCount) {
  Record record{MsiHandle(::MsiCreateRecord(fieldCount))};
  if (!record) {
    ReportInstallerResult(ERROR_CREATE_FAILED, L"MsiCreateRecord");
  }
  return record;
}

common::WideString Record::GetString(UINT field) const {
  common::WideString text;
  const UINT code = ReadInstallerText<2048>(
      text,
      [&](wchar_t* buffer, DWORD* length) {
        return ::MsiRecordGetStringW(Get(), field, buffer, length);
      },
      // Twice the size, so that it does not matter which unit the installer counts in.
      [&](DWORD) { return 2 * ::MsiRecordDataSize(Get(), field) + 1; });
  ReportInstallerResult(code, L"MsiRecordGetString");
  return text;
}

int Record::GetInteger(UINT field) const noexcept {
  return m_handle ? ::MsiRecordGetInteger(Get(), field) : 0;
}

bool Record::IsNull(UINT field) const noexcept { return ::MsiRecordIsNull(Get(), field) != FALSE; }

UINT Record::FieldCount() const noexcept { return ::MsiRecordGetFieldCount(Get()); }

void Record::SetString(UINT field, const common::WideString& text) {
  ReportInstallerResult(::MsiRecordSetStringW(Get(), field, text.c_str()), L"MsiRecordSetString");
}

void Record::SetInteger(UINT field, int value) {
  ReportInstallerResult(::MsiRecordSetInteger(Get(), field, value), L"MsiRecordSetInteger");
}

void Record::Clear() { ReportInstallerResult(::MsiRecordClearData(Get()), L"MsiRecordClearData"); }

}  // namespace qm::msidb
