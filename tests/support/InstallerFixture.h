#pragma once

#include "msidb/Record.h"
#include "msidb/View.h"
#include "tests/fakes/Imports.h"
#include "tests/support/TestDatabase.h"
#include "tests/support/Testing.h"

namespace qm::tests {

/// A new database with the table T (rows A 1, B 2, C 3), an executed view of it, and a record.
struct Bench : TestDatabase {
  Bench() {
    Run(L"CREATE TABLE `T` (`K` CHAR(72) NOT NULL, `N` SHORT PRIMARY KEY `K`)");
    Run(L"INSERT INTO `T` (`K`, `N`) VALUES ('A', 1)");
    Run(L"INSERT INTO `T` (`K`, `N`) VALUES ('B', 2)");
    Run(L"INSERT INTO `T` (`K`, `N`) VALUES ('C', 3)");
    view.OpenTable(database, L"T");
  }

  msidb::View view;
  msidb::Record record = msidb::Record::Create(2);
};

/// Checks after each test that every installer handle was closed.
class InstallerFixture : public ::testing::Test {
 protected:
  void TearDown() override {
    installer::Reset();
    EXPECT_EQ(0U, installer::CloseAllHandles()) << "handles left open";
  }

  const WatchedInstaller m_installer;
};

/// Makes the installer keep an error record, as Windows does after a failure. Field 0 is its
/// template, or null.
inline void LeaveErrorRecord(const wchar_t* layout, const wchar_t* text) {
  msidb::MsiHandle record(::MsiCreateRecord(5));
  ::MsiRecordSetStringW(record.Get(), 0, layout);
  ::MsiRecordSetInteger(record.Get(), 1, 2203);
  ::MsiRecordSetStringW(record.Get(), 2, text);
  ::MsiRecordSetInteger(record.Get(), 4, -5);
  installer::Reset();
  installer::Answer("MsiGetLastErrorRecord", record.Release());  // the reporter closes it
}

}  // namespace qm::tests
