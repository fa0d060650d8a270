#pragma once

#include <optional>

#include "msidb/Database.h"
#include "msidb/ModuleDatabase.h"
#include "msidb/SummaryInfo.h"

namespace qm::msidb {

/// A module's database, read through the installer.
class InstallerDatabase final : public ModuleDatabase {
 public:
  explicit InstallerDatabase(const common::WideString& path)
      : m_path(path), m_database(Database::OpenReadOnly(path)) {}

  bool HasTable(const wchar_t* table) const override { return m_database.HasTable(table); }
  std::unique_ptr<RowCursor> ReadTable(const wchar_t* table, const wchar_t* orderBy) const override;
  common::WideString ReadSummaryString(UINT property) override;
  HANDLE OpenFile() const noexcept override { return nullptr; }
  bool LoadAndClose(std::initializer_list<const wchar_t*>) override { return false; }
  bool IsCurrent() const override { return false; }
  void RequireUnchanged() const override {}  // the installer locks out writers

 private:
  common::WideString m_path;
  Database m_database;
  std::optional<SummaryInfo> m_summary;
};

}  // namespace qm::msidb
