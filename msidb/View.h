#pragma once

#include "msidb/Database.h"
#include "msidb/Record.h"

namespace msidb {

/// A query over a database with the row fetched last. Failures are raised, see
/// ReportInstallerResult; running out of rows is not one. The server only opens, runs and fetches:
/// RequireNext, Modify and ColumnInfo have no caller in it.
class View {
 public:
  /// Opens the query; what was open before is closed. `argument1` and `argument2` describe the call
  /// in a failure's description.
  void Open(const Database& database, const CWideString& query, const wchar_t* argument1 = L"",
            const wchar_t* argument2 = L"");

  /// The same, with the installer's code returned and not raised.
  UINT TryOpen(const Database& database, const CWideString& query) noexcept;

  /// Runs the open query. `parameters` gives the values of its "?" and must be there when it has
  /// any.
  void Execute(const Record* parameters = nullptr, const wchar_t* argument1 = L"",
               const wchar_t* argument2 = L"");

  /// Opens and executes.
  void Run(const Database& database, const CWideString& query, const Record* parameters = nullptr);

  /// Opens, executes and fetches the first row; false when there is none.
  bool RunAndFetch(const Database& database, const CWideString& query,
                   const Record* parameters = nullptr);

  /// Opens and executes "SELECT * FROM `table`".
  void RunTable(const Database& database, const CWideString& table);

  /// Fetches the next row into Row(); false at the end, and without an open query.
  bool Next();

  /// Fetches the next row, whose absence is a failure (ERROR_NO_MORE_ITEMS).
  void RequireNext();

  /// The row fetched last; none before the first and after the end.
  const Record& Row() const noexcept { return m_row; }

  /// Modifies the database through the view. A row whose primary key is there already is raised as
  /// kDuplicateKey.
  void Modify(MSIMODIFY mode, const Record& record);

  /// Names or types of the columns.
  Record ColumnInfo(MSICOLINFO kind) const;

 private:
  UINT Fetch();

  CMsiHandle m_view;
  Record m_row;
  bool m_atEnd = false;
};

}  // namespace msidb
