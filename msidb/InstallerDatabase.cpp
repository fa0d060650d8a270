#include "msidb/InstallerDatabase.h"

#include "msidb/View.h"

namespace qm::msidb {

namespace {

class InstallerRows final : public RowCursor {
 public:
  InstallerRows(const Database& database, const common::WideString& query) {
    m_view.OpenAndExecute(database, query);
  }

  bool Next() override { return m_view.Next(); }
  UINT FieldCount() const override { return m_view.Row().FieldCount(); }
  common::WideString GetString(UINT field) const override { return m_view.Row().GetString(field); }
  int GetInteger(UINT field) const override { return m_view.Row().GetInteger(field); }

 private:
  View m_view;
};

}  // namespace

std::unique_ptr<RowCursor> InstallerDatabase::ReadTable(const wchar_t* table,
                                                        const wchar_t* orderBy) const {
  common::WideString query = common::WideString(L"SELECT * FROM `") + table + L"`";
  if (orderBy) {
    query += common::WideString(L" ORDER BY `") + orderBy + L"`";
  }
  return std::make_unique<InstallerRows>(m_database, query);
}

common::WideString InstallerDatabase::ReadSummaryString(UINT property) {
  if (!m_summary) {
    m_summary.emplace(m_path);
  }
  return msidb::ReadSummaryString(m_summary->Get(), property);
}

}  // namespace qm::msidb
