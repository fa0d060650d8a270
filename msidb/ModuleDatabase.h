#pragma once

#include <windows.h>

#include <initializer_list>
#include <memory>

#include "common/NullInteger.h"
#include "common/WideString.h"

namespace qm::msidb {

/// A cursor over the rows of a table, before the first row at the start. Must not outlive its
/// database. Failures are raised as those of the installer calls that read a table.
class RowCursor {
 public:
  RowCursor() = default;
  RowCursor(const RowCursor&) = delete;
  RowCursor& operator=(const RowCursor&) = delete;
  virtual ~RowCursor() = default;

  /// Moves to the next row; false at the end. The functions below read this row.
  virtual bool Next() = 0;

  virtual UINT FieldCount() const = 0;

  /// The text of a field, counted from 1; empty if it is null or the row has no such field. Numbers
  /// are formatted in decimal.
  virtual common::WideString GetString(UINT field) const = 0;

  /// The number in a field, counted from 1; kNullInteger if it is null, a text that is not a
  /// number, or the row has no such field.
  virtual int GetInteger(UINT field) const = 0;

  /// Raises ERROR_INVALID_TABLE, with the argument `table`, if rows have fewer than `count` fields.
  /// Without this check, missing fields would read as empty.
  void RequireFields(UINT count, const wchar_t* table) const;
};

/// The database of a merge module, open for reading. Failures are raised as those of the installer
/// calls that would read it: "MsiOpenDatabase", "MsiViewExecute", and so on.
///
/// image/ reads the bytes of the file and trusts none of them. A damaged file fails there and never
/// reaches the installer, because some installers crash on such a file. An undamaged file of a kind
/// that image/ does not know is read through the installer.
class ModuleDatabase {
 public:
  ModuleDatabase(const ModuleDatabase&) = delete;
  ModuleDatabase& operator=(const ModuleDatabase&) = delete;
  virtual ~ModuleDatabase() = default;

  /// Opens the file at the full path `path`, of any length.
  static std::unique_ptr<ModuleDatabase> Open(const common::WideString& path);

  /// Returns whether the database has the table, which may be empty.
  virtual bool HasTable(const wchar_t* table) const = 0;

  /// Returns the rows of a table, in its own order or sorted by the column `orderBy`. Raises
  /// ERROR_BAD_QUERY_SYNTAX if the table or the column is missing.
  virtual std::unique_ptr<RowCursor> ReadTable(const wchar_t* table,
                                               const wchar_t* orderBy = nullptr) const = 0;

  /// Returns the text of a property of the summary information (PID_SUBJECT and so on), of any
  /// length; empty if it is missing or not a text. The first call reads the summary information and
  /// fails if that is damaged.
  virtual common::WideString ReadSummaryString(UINT property) = 0;

  /// The file, as long as it is open; null if the installer has it open.
  virtual HANDLE OpenFile() const noexcept = 0;

  /// Reads those of `tables` that exist into memory and closes the file. From then on ReadTable may
  /// be called for these tables only; it raises the damage of a table that could not be read here.
  /// Returns false and does nothing if this database can only be read while its file is open.
  /// Raises as RequireUnchanged does.
  virtual bool LoadAndClose(std::initializer_list<const wchar_t*> tables) = 0;

  /// Returns whether the file is unchanged since it was opened. Always false if LoadAndClose does
  /// nothing.
  virtual bool IsCurrent() const = 0;

  /// Raises ERROR_FILE_INVALID if the file was written since it was opened: what was read may then
  /// come from two versions. Call only while the file is open.
  virtual void RequireUnchanged() const = 0;

 protected:
  ModuleDatabase() = default;
};

}  // namespace qm::msidb
