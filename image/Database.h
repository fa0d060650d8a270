#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "image/ByteSource.h"
#include "image/CompoundFile.h"
#include "image/Damage.h"
#include "image/StringPool.h"
#include "image/SummaryInformation.h"

namespace qm::image {

enum class ColumnKind {
  Text,
  Integer,
  Stream  ///< data of any size, in a stream of its own
};

/// A column of a table as the database defines it.
struct Column {
  std::string_view name;  ///< bytes in the database's code page; valid as long as the database
  ColumnKind kind;
  unsigned size;  ///< of a cell, in bytes
  bool isKey;     ///< part of the primary key
  bool isNullable = false;
  unsigned width = 0;   ///< Text: greatest number of characters, 0 for any; Integer: `size`
  unsigned offset = 0;  ///< of a cell in a row, in bytes; TableRows sets it
};

/// A table as the database defines it.
struct TableDefinition {
  std::string_view name;  ///< bytes in the database's code page; valid as long as the database
  std::vector<Column> columns;

  /// Returns the position of a column, or nothing if no column has this name.
  std::optional<std::size_t> FindColumn(std::string_view column) const noexcept;
};

/// The rows of a table, in the order of the file. Rows and columns are numbered from 0. Functions
/// throw Damage (Row) for a cell that refers to a string that the database does not have. The
/// database must outlive the object.
class TableRows {
 public:
  TableRows(TableDefinition table, Bytes bytes, const StringPool& strings);

  const TableDefinition& Definition() const noexcept { return m_table; }
  std::size_t Count() const noexcept { return m_count; }

  /// The size of the rows in the file, in bytes.
  std::size_t Size() const noexcept { return m_bytes.size(); }

  /// Returns the number in a cell of an Integer column; nothing for null.
  std::optional<std::int32_t> Integer(std::size_t row, std::size_t column) const noexcept;

  /// Returns the bytes of a cell of a Text column, in the database's code page; empty for null.
  /// Valid as long as the database.
  std::string_view Text(std::size_t row, std::size_t column) const {
    return m_strings.Text(StringNumber(row, column));
  }

  /// Returns the number of the string in a cell of a Text column; 0 for null.
  std::uint32_t StringNumber(std::size_t row, std::size_t column) const;

  /// Returns the columns, and the rows as the file has them: column after column. The object must
  /// not be used afterwards.
  std::pair<std::vector<Column>, Bytes> Take() noexcept {
    return {std::move(m_table.columns), std::move(m_bytes)};
  }

  /// Returns whether a cell of any column is null.
  bool IsNull(std::size_t row, std::size_t column) const noexcept { return Cell(row, column) == 0; }

 private:
  std::uint32_t Cell(std::size_t row, std::size_t column) const noexcept;

  TableDefinition m_table;
  Bytes m_bytes;  ///< column after column
  const StringPool& m_strings;
  std::size_t m_count;
};

/// Reads an installer database from the bytes of its file. The constructor reads the strings and
/// the table definitions. Tables are read on demand.
///
/// Nothing in the file is trusted: see CompoundFile. Functions throw Damage of the part that they
/// read, or Structure if the file's allocation is damaged on the way there; what the source throws;
/// and std::bad_alloc. Not thread-safe.
class Database {
 public:
  /// Throws Damage (NoDatabase or Structure). `source` must outlive the object.
  explicit Database(ByteSource& source);

  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() = default;

  const StringPool& Strings() const noexcept { return m_strings; }

  /// The size of the file in bytes.
  std::uint64_t Size() const noexcept { return m_file.Size(); }

  /// Returns the names of all tables, each once, as bytes in the code page.
  std::vector<std::string_view> TableNames() const;

  /// Returns whether the database defines the table, which may have no rows. Case-sensitive.
  bool HasTable(std::string_view name) const noexcept { return FindTable(name) != 0; }

  /// Reads all rows of a table. Throws Damage (Table) if the database does not define the table
  /// properly or its last row is incomplete.
  TableRows ReadTable(std::string_view name);

  /// Reads the data of a cell of a Stream column; nothing if the cell is null or no stream has its
  /// name. `decode` converts bytes in the code page to UTF-16. Only the checks of this reader call
  /// it.
  template <class Decode>
  std::optional<Bytes> ReadStream(const TableRows& rows, std::size_t row, std::size_t column,
                                  Decode decode) {
    const auto stream = FindRowStream(rows, row, column, decode);
    return stream ? std::optional(ReadRowStream(*stream)) : std::nullopt;
  }

  /// Returns where the data of a cell of a Stream column is, without reading it; nothing where
  /// ReadStream returns nothing.
  template <class Decode>
  std::optional<CompoundFile::Stream> FindRowStream(const TableRows& rows, std::size_t row,
                                                    std::size_t column, Decode decode) const {
    if (rows.IsNull(row, column) || !CanNameStream(rows, row)) {
      return std::nullopt;
    }
    return FindOtherStream(MakeStreamName(rows, row, decode));
  }

  /// Reads data that FindRowStream found. Throws Damage (Row).
  Bytes ReadRowStream(const CompoundFile::Stream& stream);

  /// Moves the strings out of the object. Afterwards, only ReadRowStream, for streams that were
  /// found before, and ReadSummary may be called.
  StringPool TakeStrings() noexcept { return std::move(m_strings); }

  /// Reads the summary information; nothing if the file has none. Throws Damage (Summary).
  std::optional<SummaryInformation> ReadSummary();

  /// Describes the kind of the database if this reader does not know it; finding no damage then
  /// proves little. Returns nothing for known kinds.
  std::optional<std::string> UnknownKind() const;

  /// Reads every cell of every table and the summary information. Throws the first Damage, also for
  /// a summary property of unknown type.
  void Verify();

  /// See CompoundFile::VerifyStreams.
  void VerifyStreams() { m_file.VerifyStreams(); }

  /// Returns the defects of the file, see CompoundFile::Defects.
  std::vector<Defect> Defects() const;

 private:
  /// A row of _Columns, which defines the columns of all tables.
  struct ColumnRow {
    std::uint32_t table;  ///< number of a string, like `name`
    std::uint32_t name;
    std::int32_t number;  ///< from 1
    std::uint32_t type;
  };

  using ColumnRange =
      std::pair<std::vector<ColumnRow>::const_iterator, std::vector<ColumnRow>::const_iterator>;

  StringPool ReadStrings();
  void ReadDefinitions();
  void SortTables();
  Bytes ReadTableStream(std::string_view name, DamagedPart part, const Subject& subject);
  std::uint32_t FindTable(std::string_view name) const noexcept;
  static bool IsBefore(const ColumnRow& a, const ColumnRow& b) noexcept;
  ColumnRange FindColumnRows(std::uint32_t table) const noexcept;
  TableDefinition MakeDefinition(std::uint32_t table) const;
  Column MakeColumn(const ColumnRow& row) const;
  std::optional<CompoundFile::Stream> FindOtherStream(std::u16string_view name) const;

  /// Returns whether the table's name and the keys of a row are short enough for the name of a
  /// stream. Without this check, rows that share a long key would take far longer than the size of
  /// the file justifies.
  static bool CanNameStream(const TableRows& rows, std::size_t row) {
    constexpr std::size_t kMost = 1024;
    if (rows.Definition().name.size() > kMost) {
      return false;
    }
    const std::vector<Column>& columns = rows.Definition().columns;
    for (std::size_t column = 0; column < columns.size(); ++column) {
      if (columns[column].isKey && columns[column].kind == ColumnKind::Text &&
          rows.Text(row, column).size() > kMost) {
        return false;
      }
    }
    return true;
  }

  template <class Decode>
  static std::u16string MakeStreamName(const TableRows& rows, std::size_t row, Decode decode) {
    const TableDefinition& table = rows.Definition();
    std::u16string name = decode(table.name);
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      if (table.columns[column].isKey) {
        name += u'.';
        name += table.columns[column].kind == ColumnKind::Text
                    ? decode(rows.Text(row, column))
                    : decode(std::to_string(rows.Integer(row, column).value_or(0)));
      }
    }
    return name;
  }

  CompoundFile m_file;
  StringPool m_strings;
  std::vector<std::uint32_t> m_tables;        ///< numbers of strings, in the order of the file
  std::vector<std::uint32_t> m_tablesByName;  ///< the same, sorted by text
  bool m_isTableNamedTwice = false;
  std::vector<ColumnRow> m_columns;  ///< sorted by table, then by number
};

}  // namespace qm::image
