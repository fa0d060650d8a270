#include "msidb/DirectoryTable.h"

namespace qm::msidb {

DirectoryTable::DirectoryTable(const ModuleDatabase& database) : m_database(database) {
  if (!database.HasTable(L"Directory")) {
    return;
  }
  const auto rows = database.ReadTable(L"Directory");
  while (rows->Next()) {
    m_keys.push_back(rows->GetString(1));
    m_rows.try_emplace(m_keys.back(), DirectoryRow{rows->GetString(2), rows->GetString(3)});
  }
}

const DirectoryRow* DirectoryTable::Find(const common::WideString& key) const {
  const auto found = m_rows.find(key);
  return found == m_rows.end() ? nullptr : &found->second;
}

const common::WideString* DirectoryTable::FindProperty(const common::WideString& name) const {
  if (!m_properties) {
    std::map<common::WideString, common::WideString> properties;
    if (m_database.HasTable(L"Property")) {
      const auto rows = m_database.ReadTable(L"Property");
      while (rows->Next()) {
        properties.try_emplace(rows->GetString(1), rows->GetString(2));
      }
    }
    m_properties = std::move(properties);
  }
  const auto found = m_properties->find(name);
  return found == m_properties->end() ? nullptr : &found->second;
}

}  // namespace qm::msidb
