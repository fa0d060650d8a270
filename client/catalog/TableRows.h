#pragma once

#include <optional>
#include <string>

#include "client/catalog/Properties.h"
#include "client/catalog/Value.h"
#include "idl/mergeset.h"

namespace mmcat {

// Tables of modules, as the set component reads them. Everything here throws ServerFailure.

/// Calls `use` with each row of a table, as an `ISetRow&`. Does nothing if the module does not have
/// the table.
template <class Use>
void ForEachRow(ISetModule& module, const wchar_t* tableName, Use use) {
  Value name{std::wstring_view(tableName)};
  qm::common::ComPtr<ISetTable> table;
  const HRESULT hr = ReadObject(module, &ISetModule::get_Tables)->get_Item(name.Get(), table.Put());
  if (hr == E_INVALIDARG) {
    return;
  }
  ThrowIfFailed(hr);
  ForEachItem<ISetRow>(*ReadObject(*table, &ISetTable::get_Rows), use);
}

/// The cell in a column, by its name or its number from 1. Empty if the table does not have it.
template <class Column>
Value ReadCell(ISetRow& row, Column column) {
  Value which(column);
  Value cell;
  const HRESULT hr = row.get_Item(which.Get(), &cell.Get());
  ThrowIfFailed(hr == E_INVALIDARG ? S_OK : hr);
  return cell;
}

}  // namespace mmcat
