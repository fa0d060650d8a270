#include "msidb/InstallerDatabase.h"

#include "msidb/View.h"

namespace msidb {

namespace {

class InstallerRows final : public TableRows {
 public:
  InstallerRows(const Database& database, const CWideString& query) { m_view.Run(database, query); }

  bool Next() override { return m_view.Next(); }
  UINT FieldCount() const override { return m_view.Row().FieldCount(); }
  CWideString GetString(UINT field) const override { return m_view.Row().GetString(field); }
  int GetInteger(UINT field) const override { return m_view.Row().GetInteger(field); }

 private:
  View m_view;
};

}  // namespace

std::unique_ptr<TableRows> InstallerDatabase::ReadTable(const wchar_t* table,
                                                        const wchar_t* orderBy) const {
  CWideString query = CWideString(L"SELECT * FROM `") + table + L"`";
  if (orderBy) {
    query += CWideString(L" ORDER BY `") + orderBy + L"`";
  }
  return std::make_unique<InstallerRows>(m_database, query);
}

CWideString InstallerDatabase::ReadSummaryString(UINT property) {
  if (!m_summary) {
    m_summary.emplace(m_path);
  }
  return msidb::ReadSummaryString(m_summary->Get(), property);
}

}  // namespace msidb
