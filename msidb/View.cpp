#include "msidb/View.h"

#include "msidb/InstallerResult.h"

namespace qm::msidb {

void View::Open(const Database& database, const common::WideString& query, const wchar_t* argument1,
                const wchar_t* argument2) {
  ReportInstallerResult(TryOpen(database, query), L"MsiOpenDatabaseView", argument1, argument2);
}

UINT View::TryOpen(const Database& database, const common::WideString& query) noexcept {
  m_row = Record();
  return ::MsiDatabaseOpenViewW(database.Get(), query.c_str(), m_view.Put());
}

void View::Execute(const Record* parameters, const wchar_t* argument1, const wchar_t* argument2) {
  m_atEnd = false;
  ReportInstallerResult(::MsiViewExecute(m_view.Get(), parameters ? parameters->Get() : 0),
                        L"MsiViewExecute", argument1, argument2);
}

void View::OpenAndExecute(const Database& database, const common::WideString& query,
                          const Record* parameters) {
  Open(database, query);
  Execute(parameters);
}

bool View::OpenAndFetch(const Database& database, const common::WideString& query,
                        const Record* parameters) {
  OpenAndExecute(database, query, parameters);
  return Next();
}

void View::OpenTable(const Database& database, const common::WideString& table) {
  OpenAndExecute(database, common::WideString(L"SELECT * FROM `") + table + L"`");
}

bool View::Next() {
  if (!m_view || m_atEnd) {
    return false;
  }
  const UINT code = Fetch();
  // Remembered because some installers start again at the first row if they are called after the
  // end.
  m_atEnd = code == ERROR_NO_MORE_ITEMS;
  if (!m_atEnd) {
    ReportInstallerResult(code, L"MsiViewFetch");
  }
  return !m_atEnd;
}

void View::NextOrRaise() {
  if (!Next()) {
    ReportInstallerResult(ERROR_NO_MORE_ITEMS, L"MsiViewFetch");
  }
}

UINT View::Fetch() {
  m_row = Record();
  MsiHandle row;
  const UINT code = ::MsiViewFetch(m_view.Get(), row.Put());
  m_row = Record(std::move(row));
  return code;
}

void View::Modify(MSIMODIFY mode, const Record& record) {
  const UINT code = ::MsiViewModify(m_view.Get(), mode, record.Get());
  int detail = 0;
  if (code == ERROR_INVALID_DATA) {
    wchar_t columns[128];
    DWORD size = 127;
    detail = ::MsiViewGetErrorW(m_view.Get(), columns, &size);
  }
  ReportInstallerResult(code, L"MsiViewModify", L"", L"", detail);
}

Record View::ColumnInfo(MSICOLINFO kind) const {
  MsiHandle columns;
  ReportInstallerResult(::MsiViewGetColumnInfo(m_view.Get(), kind, columns.Put()),
                        L"MsiViewGetColumnInfo");
  return Record(std::move(columns));
}

}  // namespace qm::msidb
