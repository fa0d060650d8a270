#pragma once

#include "msidb/Database.h"
#include "msidb/Record.h"

namespace qm::msidb {

/// A query over a database and the row that was fetched last. Failures are raised, see
/// ReportInstallerResult; running out of rows is not a failure. The server never calls NextOrRaise,
/// Modify or ColumnInfo.
class View {
 public:
  /// Opens the query and closes the previous one. `argument1` and `argument2` are the call's
  /// arguments in a failure's description.
  void Open(const Database& database, const common::WideString& query,
            const wchar_t* argument1 = L"", const wchar_t* argument2 = L"");

  /// As Open, but returns the installer's code instead of raising it.
  UINT TryOpen(const Database& database, const common::WideString& query) noexcept;

  /// Executes the open query. `parameters` holds the values of its "?" markers; it may be null if
  /// the query has none.
  void Execute(const Record* parameters = nullptr, const wchar_t* argument1 = L"",
               const wchar_t* argument2 = L"");

  /// Opens and executes.
  void OpenAndExecute(const Database& database, const common::WideString& query,
                      const Record* parameters = nullptr);

  /// Opens, executes and fetches the first row; false if there are no rows.
  bool OpenAndFetch(const Database& database, const common::WideString& query,
                    const Record* parameters = nullptr);

  /// Opens and executes "SELECT * FROM `table`".
  void OpenTable(const Database& database, const common::WideString& table);

  /// Fetches the next row into Row(); false at the end, and if no query is open.
  bool Next();

  /// Fetches the next row. Raises ERROR_NO_MORE_ITEMS at the end.
  void NextOrRaise();

  /// The row fetched last; empty before the first fetch and after the end.
  const Record& Row() const noexcept { return m_row; }

  /// Modifies the database through the view. Raises kDuplicatePrimaryKey if a row with the same
  /// primary key exists.
  void Modify(MSIMODIFY mode, const Record& record);

  /// Returns the names or the types of the columns.
  Record ColumnInfo(MSICOLINFO kind) const;

 private:
  UINT Fetch();

  MsiHandle m_view;
  Record m_row;
  bool m_atEnd = false;
};

}  // namespace qm::msidb
