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
  unsigned size;  ///< bytes of a cell
  bool isKey;     ///< part of the primary key
};

/// A table as the database defines it.
struct Table {
  std::string_view name;  ///< bytes in the database's code page; valid as long as the database
  std::vector<Column> columns;

  /// The position of a column, if there is one of this name.
  std::optional<std::size_t> FindColumn(std::string_view column) const noexcept;
};

/// The rows of a table, in the order in which the file has them. Rows and columns are numbered from
/// 0. The functions throw Damage (Row) for a cell that names a string the database does not have.
class Rows {
 public:
  Rows(Table table, Bytes bytes, const StringPool& strings);

  const Table& GetTable() const noexcept { return m_table; }
  std::size_t Count() const noexcept { return m_count; }

  /// The bytes that the rows take up in the file.
  std::size_t Size() const noexcept { return m_bytes.size(); }

  /// The number in a cell of an Integer column; nothing for null.
  std::optional<std::int32_t> Integer(std::size_t row, std::size_t column) const noexcept;

  /// The bytes of a cell of a Text column, in the database's code page; empty for null. Valid as
  /// long as the database.
  std::string_view Text(std::size_t row, std::size_t column) const {
    return m_strings.Text(StringNumber(row, column));
  }

  /// The number of the string in a cell of a Text column; 0 for null.
  std::uint32_t StringNumber(std::size_t row, std::size_t column) const;

  /// Whether a cell of any column has no value.
  bool IsNull(std::size_t row, std::size_t column) const noexcept { return Cell(row, column) == 0; }

 private:
  std::uint32_t Cell(std::size_t row, std::size_t column) const noexcept;

  Table m_table;
  Bytes m_bytes;
  const StringPool& m_strings;
  std::vector<std::size_t> m_columnStarts;  ///< in the bytes: a column stands as a whole
  std::size_t m_count;
};

/// An installer database, read from the bytes of its file. Opening reads the strings and the
/// definitions of the tables; a table is read when it is asked for.
///
/// Nothing in the file is believed: see CompoundFile. Functions throw Damage of the part that they
/// read, or Structure where the file's allocation leads astray on the way there; what the source
/// throws; and std::bad_alloc.
class Database {
 public:
  /// Damage is NoDatabase or Structure. `source` must outlive the object.
  explicit Database(ByteSource& source);

  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() = default;

  const StringPool& Strings() const noexcept { return m_strings; }

  /// The names of all tables, each once, as bytes in the code page.
  std::vector<std::string_view> TableNames() const;

  /// Whether the database defines the table; it may have no rows. Case counts.
  bool HasTable(std::string_view name) const noexcept { return FindTable(name) != 0; }

  /// All rows of a table. Damage (Table) if the database does not define the table properly, or its
  /// rows are not whole.
  Rows ReadTable(std::string_view name);

  /// The data of a cell of a Stream column; nothing if the cell is null or no stream has its name.
  /// `decode` makes UTF-16 of bytes in the code page. No caller in the server; it makes all that a
  /// file holds readable for those who check this reader.
  template <class Decode>
  std::optional<Bytes> ReadStream(const Rows& rows, std::size_t row, std::size_t column,
                                  Decode decode) {
    if (rows.IsNull(row, column)) {
      return std::nullopt;
    }
    return ReadOtherStream(StreamNameOf(rows, row, decode));
  }

  /// The summary information; nothing if the file has none. Damage (Summary).
  std::optional<SummaryInformation> ReadSummary();

  /// Why the database is of a kind that this reader cannot vouch for although it found no damage;
  /// nothing for the kinds that it knows.
  std::optional<std::string> UnknownKind() const;

  /// Reads every cell of every table and the summary, in which it allows properties of known types
  /// alone. Throws the first Damage.
  void Verify();

  /// See CompoundFile::VerifyStreams.
  void VerifyStreams() { m_file.VerifyStreams(); }

  /// What is odd about the file, see CompoundFile::Defects.
  std::vector<Defect> Defects() const;

 private:
  /// A row of the table that defines the columns of all tables.
  struct ColumnRow {
    std::uint32_t table;  ///< strings
    std::uint32_t name;
    std::int32_t number;  ///< from 1
    std::uint32_t type;
  };

  using ColumnRange =
      std::pair<std::vector<ColumnRow>::const_iterator, std::vector<ColumnRow>::const_iterator>;

  void ReadStrings();
  void ReadDefinitions();
  void OrderTables();
  Bytes ReadTableStream(std::string_view name, DamagedPart part, const Subject& subject);
  std::uint32_t FindTable(std::string_view name) const noexcept;
  static bool IsBefore(const ColumnRow& a, const ColumnRow& b) noexcept;
  ColumnRange ColumnsOf(std::uint32_t table) const noexcept;
  Table DefinitionOf(std::uint32_t table) const;
  Column ColumnOf(const ColumnRow& row) const;
  std::optional<Bytes> ReadOtherStream(std::u16string_view name);

  template <class Decode>
  static std::u16string StreamNameOf(const Rows& rows, std::size_t row, Decode decode) {
    const Table& table = rows.GetTable();
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
  std::vector<std::uint32_t> m_tables;        ///< strings, in the order of the file
  std::vector<std::uint32_t> m_tablesByName;  ///< the same, in the order of their texts
  bool m_isTableNamedTwice = false;
  std::vector<ColumnRow> m_columns;  ///< by table, then by number
};

}  // namespace qm::image
