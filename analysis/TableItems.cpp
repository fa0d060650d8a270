#include "analysis/TableItems.h"

#include <algorithm>

#include "analysis/SetCollection.h"
#include "com/error/Raise.h"
#include "text/Fold.h"

namespace qm::analysis {

namespace {

const char* GetTypeName(image::ColumnKind kind) noexcept {
  switch (kind) {
    case image::ColumnKind::Text:
      return "text";
    case image::ColumnKind::Integer:
      return "number";
    default:
      return "binary";
  }
}

/// Returns the position of the column that an index names; the number of columns if there is none.
size_t FindColumn(const std::vector<merge::Column>& columns, const common::CollectionIndex& index) {
  if (!index.IsKey()) {
    return std::min(index.Position(), columns.size());
  }
  const std::string name = text::FoldCase(text::ToUtf8(index.Key()));
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const merge::Column& column) {
    return text::FoldCase(column.name) == name;
  });
  return static_cast<size_t>(found - columns.begin());
}

void StoreCell(const merge::Table& table, size_t row, size_t column, VARIANT& value) {
  if (const std::optional<std::int32_t> number = table.Number(row, column)) {
    value.vt = VT_I4;
    value.lVal = *number;
  } else if (table.IsNull(row, column)) {
    value.vt = VT_NULL;
  } else {
    value.bstrVal = com::AllocateBstr(text::ToWide(table.Format(row, column))).Release();
    value.vt = VT_BSTR;
  }
}

}  // namespace

void SetColumn::Init(SharedTables tables, const merge::Column& column) noexcept {
  m_tables = std::move(tables);
  m_column = &column;
}

STDMETHODIMP SetColumn::get_Name(BSTR* value) { return AnswerUtf8(value, m_column->name); }
STDMETHODIMP SetColumn::get_Type(BSTR* value) {
  return AnswerUtf8(value, GetTypeName(m_column->kind));
}
STDMETHODIMP SetColumn::get_Width(long* value) {
  return AnswerNumber(value, static_cast<long>(m_column->width));
}
STDMETHODIMP SetColumn::get_IsKey(VARIANT_BOOL* value) {
  return AnswerFlag(value, m_column->isKey);
}
STDMETHODIMP SetColumn::get_IsNullable(VARIANT_BOOL* value) {
  return AnswerFlag(value, m_column->isNullable);
}

void SetRow::Init(SharedTables tables, const merge::Table& table, size_t row) noexcept {
  m_tables = std::move(tables);
  m_table = &table;
  m_row = row;
}

STDMETHODIMP SetRow::get_Item(VARIANT column, VARIANT* value) {
  return FillOut(value, [&] {
    const size_t position = FindColumn(m_table->Columns(), common::CollectionIndex(column));
    if (position == m_table->Columns().size()) {
      return E_INVALIDARG;
    }
    StoreCell(*m_table, m_row, position, *value);
    return S_OK;
  });
}

void SetTable::Init(SharedTables tables, const merge::Table& table) noexcept {
  m_tables = std::move(tables);
  m_table = &table;
}

STDMETHODIMP SetTable::get_Name(BSTR* value) { return AnswerUtf8(value, m_table->Name()); }

STDMETHODIMP SetTable::get_Columns(ISetColumns** value) {
  return Answer(value, [&] {
    return MakeCollection<ISetColumns, ISetColumn>(
        m_table->Columns().size(),
        [tables = m_tables, table = m_table](size_t at) {
          return com::MakeObject<SetColumn>(tables, table->Columns()[at]);
        },
        [tables = m_tables, table = m_table](size_t at) {
          return std::string(table->Columns()[at].name);
        });
  });
}

STDMETHODIMP SetTable::get_Rows(ISetRows** value) {
  return Answer(value, [&] {
    return MakeCollection<ISetRows, ISetRow>(
        m_table->RowCount(),
        [tables = m_tables, table = m_table](size_t at) {
          return com::MakeObject<SetRow>(tables, *table, at);
        },
        nullptr);
  });
}

STDMETHODIMP SetTable::get_Failure(BSTR* value) { return AnswerUtf8(value, m_table->Failure()); }

ISetTables* MakeTables(const SharedTables& tables) {
  return MakeCollection<ISetTables, ISetTable>(
      tables ? tables->All().size() : 0,
      [tables](size_t at) { return com::MakeObject<SetTable>(tables, tables->All()[at]); },
      [tables](size_t at) { return std::string(tables->All()[at].Name()); });
}

}  // namespace qm::analysis
