#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "image/Database.h"
#include "merge/SharedStreams.h"

namespace qm::merge {

/// Converts bytes in a code page to UTF-8; 0 is the code page of the system. Returns nothing if the
/// code page is not available. Not called for ASCII text in the code pages of Windows.
using DecodeText =
    std::function<std::optional<std::string>(std::string_view bytes, std::uint32_t codePage)>;

/// A column of a table, with its name as UTF-8.
using image::Column;

/// A table of a module. Rows and columns are numbered from 0 and must exist. Immutable. Belongs to
/// its ModuleTables, which must outlive all views of its texts.
class Table {
 public:
  std::string_view Name() const noexcept { return m_name; }
  const std::vector<Column>& Columns() const noexcept { return m_columns; }

  /// Returns the position of a column, case-sensitive; nothing if no column has this name.
  std::optional<std::size_t> FindColumn(std::string_view name) const noexcept;

  std::size_t RowCount() const noexcept { return m_rowCount; }

  /// Why the table cannot be read: one sentence. It then has the rows before the first damaged one,
  /// or neither rows nor columns. Empty if all of it was read.
  const std::string& Failure() const noexcept { return m_failure; }

  bool IsNull(std::size_t row, std::size_t column) const noexcept { return Cell(row, column) == 0; }

  /// Returns the text in a cell of a Text column; empty for null and in other columns.
  std::string_view Text(std::size_t row, std::size_t column) const noexcept;

  /// Returns the number of the text in a cell: cells of one module with equal numbers have the same
  /// text. The reverse holds unless the writer of the file stored a text twice. 0 for null and in
  /// columns that are not Text.
  std::uint32_t TextNumber(std::size_t row, std::size_t column) const noexcept;

  /// Returns the number in a cell of an Integer column; nothing for null and in other columns.
  std::optional<std::int32_t> Number(std::size_t row, std::size_t column) const noexcept;

  /// Returns the size in bytes of the data of a cell of a Stream column; nothing for null, in other
  /// columns, and if the file has no data for the cell.
  std::optional<std::uint64_t> StreamSize(std::size_t row, std::size_t column) const noexcept;

  /// Returns a hash of the data of such a cell; nothing if it was not read: no other module of the
  /// set has data of this size in this row, the data is damaged or larger than 256 MB, or the cells
  /// of the file claim more data than the file has bytes.
  std::optional<std::uint64_t> StreamHash(std::size_t row, std::size_t column) const noexcept;

  /// Formats a cell of any column for display: the text, the number in decimal, or "binary of 12
  /// bytes". Empty for null.
  std::string Format(std::size_t row, std::size_t column) const;

 private:
  friend class ModuleTables;

  struct Stream {
    std::size_t cell;  ///< row times columns plus column
    std::uint64_t size;
    std::optional<std::uint64_t> hash = {};
  };

  const Stream* FindStream(std::size_t row, std::size_t column) const noexcept;
  std::uint32_t Cell(std::size_t row, std::size_t column) const noexcept;

  const class ModuleTables* m_owner = nullptr;
  std::string_view m_name;
  std::vector<Column> m_columns;
  std::size_t m_rowCount = 0;
  std::size_t m_rowsInFile = 0;   ///< including those that cannot be read
  image::Bytes m_cells;           ///< column after column, as in the file
  std::vector<Stream> m_streams;  ///< sorted by cell
  std::string m_failure;
};

/// Every table of a module, in the form in which the file has them: a cell is the number of a text,
/// a number, or a mark that there is data. The texts are kept once, as UTF-8. Takes about as much
/// memory as the tables take in the file. Immutable.
class ModuleTables {
 public:
  /// Reads all tables of a database. This may take the strings of the database, so only its summary
  /// information may be read afterwards. Also reads the data that another module has too, as noted
  /// in `shared` (which may be null), up to the size of the file in total. Damage of a table
  /// becomes its Failure(), and so does a table with which the tables would have more bytes than
  /// the file. Throws std::bad_alloc, and what the source of the database throws.
  ModuleTables(image::Database& database, const DecodeText& decode,
               SharedStreams* shared = nullptr);
  ModuleTables(const ModuleTables&) = delete;
  ModuleTables& operator=(const ModuleTables&) = delete;
  ~ModuleTables() = default;

  /// The tables in the order of the file.
  const std::vector<Table>& All() const noexcept { return m_tables; }

  /// Returns a table by its name, case-sensitive; null if there is no such table.
  const Table* Find(std::string_view name) const noexcept;

  /// The first failure, of a table or of the texts; empty if everything was read.
  const std::string& Failure() const noexcept { return m_failure; }

  /// The code page of the texts in the file; 0 means the system's own.
  std::uint32_t CodePage() const noexcept { return m_codePage; }

 private:
  friend class Table;
  class Reader;

  std::string_view Text(std::uint32_t number) const noexcept;

  std::uint32_t m_codePage = 0;
  image::Bytes m_texts;               ///< one after another
  std::vector<std::uint32_t> m_ends;  ///< of each text, from text 0 on
  std::vector<Table> m_tables;
  std::vector<std::uint32_t> m_byName;  ///< positions in m_tables, sorted by name
  std::string m_failure;
};

}  // namespace qm::merge
