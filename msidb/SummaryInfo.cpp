#include "msidb/SummaryInfo.h"

#include <memory>

#include "msidb/InstallerResult.h"

namespace qm::msidb {

SummaryInfo::SummaryInfo(const common::WideString& path) {
  ReportInstallerResult(::MsiGetSummaryInformationW(0, path.c_str(), 0, m_handle.Put()),
                        L"MsiGetSummaryInformation", path.c_str());
}

common::WideString ReadSummaryString(MSIHANDLE handle, UINT property) {
  UINT type = VT_EMPTY;
  const auto read = [&](wchar_t* buffer, DWORD length) {
    INT number = 0;
    FILETIME time{};
    const UINT code =
        ::MsiSummaryInfoGetPropertyW(handle, property, &type, &number, &time, buffer, &length);
    return std::pair(code, length);
  };
  constexpr DWORD usualLength = 260;
  wchar_t usual[usualLength] = L"";
  const auto [code, length] = read(usual, usualLength);
  if (code != ERROR_MORE_DATA) {
    return type == VT_LPSTR ? common::WideString(usual) : common::WideString();
  }
  const auto longer = std::make_unique<wchar_t[]>(length + 1);
  read(longer.get(), length + 1);
  return type == VT_LPSTR ? common::WideString(longer.get()) : common::WideString();
}

}  // namespace qm::msidb
