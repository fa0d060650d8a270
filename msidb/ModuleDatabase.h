#pragma once

#include <windows.h>

#include <initializer_list>
#include <memory>

#include "common/NullInteger.h"
#include "common/WideString.h"

namespace msidb {

/// The rows of a table, one after the other. Failures are raised as those of the installer calls
/// that read a table.
class TableRows {
 public:
  TableRows() = default;
  TableRows(const TableRows&) = delete;
  TableRows& operator=(const TableRows&) = delete;
  virtual ~TableRows() = default;

  /// Goes to the next row, at first to the first one; false at the end. The functions below are
  /// about this row.
  virtual bool Next() = 0;

  virtual UINT FieldCount() const = 0;

  /// The text of a field, numbered from 1; empty for null and for a field that the row does not
  /// have. A number is written in decimal digits.
  virtual CWideString GetString(UINT field) const = 0;

  /// The number of a field; kNullInteger for null, for a text that is no number, and for a
  /// field that the row does not have.
  virtual int GetInteger(UINT field) const = 0;

  /// Raises ERROR_INVALID_TABLE if rows of `table` have fewer fields than its definition gives
  /// them: fields that are missing read as empty.
  void RequireFields(UINT count, const wchar_t* table) const;
};

/// The database of a merge module, open for reading. Failures are raised as those of the installer
/// calls that would read it: "MsiOpenDatabase", "MsiViewExecute", and so on.
///
/// The bytes of the file are read by image/, which believes none of them. A file that it refuses as
/// damaged fails, and the installer never sees it: not every installer survives such a file. A
/// database in which it finds no damage, but something that it does not know, is read through the
/// installer.
class ModuleDatabase {
 public:
  ModuleDatabase(const ModuleDatabase&) = delete;
  ModuleDatabase& operator=(const ModuleDatabase&) = delete;
  virtual ~ModuleDatabase() = default;

  /// Opens the file at the full path `path`, of any length.
  static std::unique_ptr<ModuleDatabase> Open(const CWideString& path);

  /// Whether the database has the table, which may be empty.
  virtual bool HasTable(const wchar_t* table) const = 0;

  /// The rows of a table, in its own order, or by the values of the column `orderBy`. A table or
  /// column that is missing is ERROR_BAD_QUERY_SYNTAX.
  virtual std::unique_ptr<TableRows> ReadTable(const wchar_t* table,
                                               const wchar_t* orderBy = nullptr) const = 0;

  /// The text of a property of the summary information (PID_SUBJECT and so on), of any length;
  /// empty if it is missing or no text. The first call reads the summary information and fails if
  /// that is damaged.
  virtual CWideString ReadSummaryString(UINT property) = 0;

  /// Reads those of `tables` that there are into memory and closes the file. ReadTable gives these
  /// tables from then on, and no others; what is wrong with one is raised there. Returns false, and
  /// does nothing, if this database can only be read while it is open. Raises as RequireUnchanged
  /// does.
  virtual bool LoadAndClose(std::initializer_list<const wchar_t*> tables) = 0;

  /// Whether the file is still the one that LoadAndClose read.
  virtual bool IsCurrent() const = 0;

  /// Raises ERROR_FILE_INVALID if the file was written since it was opened, so that what was read
  /// may be of two versions.
  virtual void RequireUnchanged() const = 0;

 protected:
  ModuleDatabase() = default;
};

}  // namespace msidb
