#pragma once

#include <initializer_list>
#include <string>

#include "msidb/Database.h"
#include "msidb/View.h"
#include "tests/support/TestFolder.h"
#include "tests/support/UnknownKind.h"

namespace qm::tests {

/// A new installer database in a file of its own.
struct TestDatabase {
  void Run(const wchar_t* query) { msidb::View().OpenAndExecute(database, query); }

  /// Adds a row of texts, which may contain any characters. Empty ones are null.
  void Insert(const wchar_t* table, std::initializer_list<common::WideString> cells) {
    msidb::Record row = msidb::Record::Create(static_cast<UINT>(cells.size()));
    UINT field = 0;
    for (const common::WideString& cell : cells) {
      row.SetString(++field, cell);
    }
    msidb::View view;
    view.OpenTable(database, table);
    view.Modify(MSIMODIFY_INSERT, row);
  }

  /// Commits and closes the database, so that others can read the file.
  void CommitAndClose() {
    if (database.Get()) {
      database.Commit();
      const msidb::Database closed = std::move(database);
    }
  }

  const TestFolder folder;  // destroyed after the database, which has its file open
  const std::wstring path = folder / L"test.msm";
  msidb::Database database = msidb::Database::Open(path.c_str(), MSIDBOPEN_CREATE);
};

}  // namespace qm::tests
