#pragma once

#include "analysis/SetObject.h"

namespace qm::analysis {

using SharedTables = std::shared_ptr<const merge::ModuleTables>;

/// A column of a table.
class SetColumn : public SetObject<ISetColumn> {
 public:
  void Init(SharedTables tables, const merge::Column& column) noexcept;

  STDMETHOD(get_Name)(BSTR* value) override;
  STDMETHOD(get_Type)(BSTR* value) override;
  STDMETHOD(get_Width)(long* value) override;
  STDMETHOD(get_IsKey)(VARIANT_BOOL* value) override;
  STDMETHOD(get_IsNullable)(VARIANT_BOOL* value) override;

 private:
  SharedTables m_tables;
  const merge::Column* m_column = nullptr;
};

/// A row of a table.
class SetRow : public SetObject<ISetRow> {
 public:
  void Init(SharedTables tables, const merge::Table& table, size_t row) noexcept;

  STDMETHOD(get_Item)(VARIANT column, VARIANT* value) override;

 private:
  SharedTables m_tables;
  const merge::Table* m_table = nullptr;
  size_t m_row = 0;
};

/// A table of a module.
class SetTable : public SetObject<ISetTable> {
 public:
  void Init(SharedTables tables, const merge::Table& table) noexcept;

  STDMETHOD(get_Name)(BSTR* value) override;
  STDMETHOD(get_Columns)(ISetColumns** value) override;
  STDMETHOD(get_Rows)(ISetRows** value) override;
  STDMETHOD(get_Failure)(BSTR* value) override;

 private:
  SharedTables m_tables;
  const merge::Table* m_table = nullptr;
};

/// Makes a collection of tables; an empty one for null.
ISetTables* MakeTables(const SharedTables& tables);

}  // namespace qm::analysis
