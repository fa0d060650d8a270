#include "msidb/SummaryInfo.h"

#include "msidb/InstallerResult.h"
#include "msidb/TextReader.h"

namespace msidb {

SummaryInfo::SummaryInfo(const CWideString& path) {
  ReportInstallerResult(::MsiGetSummaryInformationW(0, path.c_str(), 0, m_handle.Put()),
                        L"MsiGetSummaryInformation", path.c_str());
}

CWideString SummaryInfo::GetString(UINT property) const {
  CWideString text;
  UINT type = VT_EMPTY;
  ReadText<260>(
      text,
      [&](wchar_t* buffer, DWORD* length) {
        INT number = 0;
        FILETIME time{};
        return ::MsiSummaryInfoGetPropertyW(m_handle.Get(), property, &type, &number, &time, buffer,
                                            length);
      },
      [](DWORD length) { return length + 1; });
  return type == VT_LPSTR ? text : CWideString();
}

}  // namespace msidb
