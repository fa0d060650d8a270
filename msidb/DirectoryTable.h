#pragma once

#include <map>
#include <optional>
#include <vector>

#include "msidb/ModuleDatabase.h"

namespace msidb {

/// A row of the Directory table.
struct DirectoryRow {
  CWideString parent;
  CWideString defaultDir;
  mutable std::optional<bool> isPredefined = std::nullopt;  ///< once PredefinedRootMatch was asked
};

/// What a walk of directories needs of a module: its Directory table by key and, once somebody asks
/// for it, its Property table. A table that is missing is empty. Failures of reading are raised as
/// ModuleDatabase raises them.
class DirectoryTable {
 public:
  /// Reads the Directory table. `database` must outlive the object.
  explicit DirectoryTable(const ModuleDatabase& database);

  /// The keys of all rows, in the order of the table.
  const std::vector<CWideString>& Keys() const noexcept { return m_keys; }

  /// The row of a key, of which case counts; null if there is no such row.
  const DirectoryRow* Find(const CWideString& key) const;

  /// The value of a row of the Property table; null if there is no such row.
  const CWideString* FindProperty(const CWideString& name) const;

 private:
  const ModuleDatabase& m_database;
  std::vector<CWideString> m_keys;
  std::map<CWideString, DirectoryRow> m_rows;
  mutable std::optional<std::map<CWideString, CWideString>> m_properties;  ///< once asked for
};

}  // namespace msidb
