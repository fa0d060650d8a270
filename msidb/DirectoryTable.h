#pragma once

#include <map>
#include <optional>
#include <vector>

#include "msidb/ModuleDatabase.h"

namespace qm::msidb {

/// A row of the Directory table.
struct DirectoryRow {
  common::WideString parent;
  common::WideString defaultDir;
  mutable std::optional<bool> isPredefined = std::nullopt;  ///< cached by PredefinedRootMatch
};

/// The tables of a module that a directory walk needs: the Directory table by key and the Property
/// table, which is read on first use. A missing table is treated as empty. Failures are raised as
/// ModuleDatabase raises them. Not thread-safe.
class DirectoryTable {
 public:
  /// Reads the Directory table. `database` must outlive the object.
  explicit DirectoryTable(const ModuleDatabase& database);

  /// The keys of all rows, in table order.
  const std::vector<common::WideString>& Keys() const noexcept { return m_keys; }

  /// Finds the row of a key, which is case-sensitive; null if there is no such row.
  const DirectoryRow* Find(const common::WideString& key) const;

  /// Finds the value of a property, whose name is case-sensitive; null if there is no such row.
  const common::WideString* FindProperty(const common::WideString& name) const;

 private:
  const ModuleDatabase& m_database;
  std::vector<common::WideString> m_keys;
  std::map<common::WideString, DirectoryRow> m_rows;
  mutable std::optional<std::map<common::WideString, common::WideString>>
      m_properties;  ///< read on first use
};

}  // namespace qm::msidb
