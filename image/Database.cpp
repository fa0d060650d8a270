#include "image/Database.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

#include "image/StreamName.h"

namespace qm::image {

namespace {

// The bits of a column's type.
constexpr std::uint32_t kSizeBits = 0x00FF;
constexpr std::uint32_t kValidBit = 0x0100;
constexpr std::uint32_t kTextBit = 0x0800;
constexpr std::uint32_t kNullableBit = 0x1000;
constexpr std::uint32_t kKeyBit = 0x2000;

constexpr char16_t kSummaryName[] = u"\005SummaryInformation";

/// Returns the size of a cell of an integer column in bytes; 0 if the type has no valid size.
unsigned IntegerCellSize(std::uint32_t type) noexcept {
  const unsigned size = type & kSizeBits;
  return size == 1 ? 2 : size == 2 || size == 4 ? size : 0;
}

Subject MakeTableSubject(std::string_view table) noexcept { return {"Table", table}; }

/// The table that names all tables.
TableDefinition MakeTablesDefinition(unsigned referenceSize) {
  return {"_Tables", {{"Name", ColumnKind::Text, referenceSize, true}}};
}

/// The table that defines the columns of all tables.
TableDefinition MakeColumnsDefinition(unsigned referenceSize) {
  return {"_Columns",
          {{"Table", ColumnKind::Text, referenceSize, true},
           {"Number", ColumnKind::Integer, 2, true},
           {"Name", ColumnKind::Text, referenceSize, false},
           {"Type", ColumnKind::Integer, 2, false}}};
}

}  // namespace

std::optional<std::size_t> TableDefinition::FindColumn(std::string_view column) const noexcept {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].name == column) {
      return i;
    }
  }
  return std::nullopt;
}

TableRows::TableRows(TableDefinition table, Bytes bytes, const StringPool& strings)
    : m_table(std::move(table)), m_bytes(std::move(bytes)), m_strings(strings) {
  unsigned rowSize = 0;
  for (Column& column : m_table.columns) {
    column.offset = rowSize;
    rowSize += column.size;
  }
  if (rowSize == 0 || m_bytes.size() % rowSize != 0) {
    ThrowDamage(DamagedPart::Table, MakeTableSubject(m_table.name), " has ", m_bytes.size(),
                " bytes, which is not a whole number of rows of ", rowSize, '.');
  }
  m_count = m_bytes.size() / rowSize;
}

std::uint32_t TableRows::Cell(std::size_t row, std::size_t column) const noexcept {
  const unsigned size = m_table.columns[column].size;
  const std::uint8_t* const cell =
      m_bytes.data() + m_table.columns[column].offset * m_count + row * size;
  std::uint32_t value = 0;
  for (unsigned i = size; i > 0; --i) {
    value = value << 8U | cell[i - 1];
  }
  return value;
}

std::optional<std::int32_t> TableRows::Integer(std::size_t row, std::size_t column) const noexcept {
  const std::uint32_t cell = Cell(row, column);
  if (cell == 0) {
    return std::nullopt;
  }
  // Numbers are stored with an offset, so that 0 means null.
  const std::uint32_t shift = 1U << (8 * m_table.columns[column].size - 1);
  return static_cast<std::int32_t>(cell - shift);
}

std::uint32_t TableRows::StringNumber(std::size_t row, std::size_t column) const {
  const std::uint32_t number = Cell(row, column);
  if (number >= m_strings.EndNumber()) {
    ThrowDamage(DamagedPart::Row, "Row ", row + 1, " of table ", Quote(m_table.name),
                " names string ", number, " of ", m_strings.EndNumber() - 1, '.');
  }
  return number;
}

Database::Database(ByteSource& source) : m_file(source), m_strings(ReadStrings()) {
  ReadDefinitions();
}

StringPool Database::ReadStrings() {
  const auto pool = m_file.FindStream(EncodeStreamName("_StringPool", StreamKind::Table));
  if (!pool) {
    ThrowDamage(DamagedPart::NoDatabase,
                "The file is a compound file without the string pool of an installer database.");
  }
  const Bytes entries = m_file.Read(*pool, DamagedPart::Structure, "The string pool");
  return StringPool(entries,
                    ReadTableStream("_StringData", DamagedPart::Structure, "The string data"));
}

void Database::ReadDefinitions() {
  const auto read = [&](TableDefinition table) {
    Bytes bytes = ReadTableStream(table.name, DamagedPart::Structure, MakeTableSubject(table.name));
    return TableRows(std::move(table), std::move(bytes), m_strings);
  };
  try {
    const TableRows tables = read(MakeTablesDefinition(m_strings.ReferenceSize()));
    m_tables.reserve(tables.Count());
    for (std::size_t row = 0; row < tables.Count(); ++row) {
      m_tables.push_back(tables.StringNumber(row, 0));
    }
    SortTables();
    m_isTableNamedTwice = m_tables.size() < tables.Count();
    const TableRows columns = read(MakeColumnsDefinition(m_strings.ReferenceSize()));
    m_columns.reserve(columns.Count());
    for (std::size_t row = 0; row < columns.Count(); ++row) {
      const auto type = static_cast<std::uint32_t>(columns.Integer(row, 3).value_or(0));
      m_columns.push_back({columns.StringNumber(row, 0), columns.StringNumber(row, 2),
                           columns.Integer(row, 1).value_or(0), type & 0xFFFFU});
    }
    // The installer keeps them in this order.
    if (!std::is_sorted(m_columns.begin(), m_columns.end(), IsBefore)) {
      std::stable_sort(m_columns.begin(), m_columns.end(), IsBefore);
    }
  } catch (const Damage& damage) {
    throw Damage(DamagedPart::Structure, damage.what());  // no table can be read without them
  }
}

/// Removes all but the first of several tables with the same name, and sorts the list of tables by
/// name.
void Database::SortTables() {
  std::vector<std::size_t> positions(m_tables.size());
  std::iota(positions.begin(), positions.end(), std::size_t{0});
  // By string number first, because a long name that many rows share would be compared repeatedly.
  std::sort(positions.begin(), positions.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(m_tables[a], a) < std::pair(m_tables[b], b);
  });
  const auto isSameString = [&](std::size_t a, std::size_t b) {
    return m_tables[a] == m_tables[b];
  };
  positions.erase(std::unique(positions.begin(), positions.end(), isSameString), positions.end());
  const auto textAt = [&](std::size_t position) { return m_strings.Text(m_tables[position]); };
  std::sort(positions.begin(), positions.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(textAt(a), a) < std::pair(textAt(b), b);
  });
  const auto isSame = [&](std::size_t a, std::size_t b) { return textAt(a) == textAt(b); };
  positions.erase(std::unique(positions.begin(), positions.end(), isSame), positions.end());
  const auto tablesAt = [&] {
    std::vector<std::uint32_t> tables(positions.size());
    std::transform(positions.begin(), positions.end(), tables.begin(),
                   [&](std::size_t position) { return m_tables[position]; });
    return tables;
  };
  m_tablesByName = tablesAt();
  if (positions.size() < m_tables.size()) {
    std::sort(positions.begin(), positions.end());
    m_tables = tablesAt();
  }
}

/// Reads the stream with the rows of a table. Empty if there is no stream, as for a table without
/// rows.
Bytes Database::ReadTableStream(std::string_view name, DamagedPart part, const Subject& subject) {
  const auto stream = m_file.FindStream(EncodeStreamName(name, StreamKind::Table));
  return stream ? m_file.Read(*stream, part, subject) : Bytes();
}

std::optional<CompoundFile::Stream> Database::FindOtherStream(std::u16string_view name) const {
  return m_file.FindStream(EncodeStreamName(name, StreamKind::Other));
}

Bytes Database::ReadRowStream(const CompoundFile::Stream& stream) {
  return m_file.Read(stream, DamagedPart::Row, "The data of a row");
}

std::vector<std::string_view> Database::TableNames() const {
  std::vector<std::string_view> names;
  names.reserve(m_tables.size());
  for (const std::uint32_t table : m_tables) {
    names.push_back(m_strings.Text(table));
  }
  return names;
}

/// Returns the string number of a table's name, or 0 if there is no such table.
std::uint32_t Database::FindTable(std::string_view name) const noexcept {
  const auto found = std::lower_bound(
      m_tablesByName.begin(), m_tablesByName.end(), name,
      [&](std::uint32_t table, std::string_view wanted) { return m_strings.Text(table) < wanted; });
  return found == m_tablesByName.end() || m_strings.Text(*found) != name ? 0 : *found;
}

bool Database::IsBefore(const ColumnRow& a, const ColumnRow& b) noexcept {
  return a.table != b.table ? a.table < b.table : a.number < b.number;
}

/// Returns the rows that define the columns of a table, sorted by number.
Database::ColumnRange Database::FindColumnRows(std::uint32_t table) const noexcept {
  return std::equal_range(m_columns.begin(), m_columns.end(), ColumnRow{table, 0, 0, 0},
                          [](const ColumnRow& a, const ColumnRow& b) { return a.table < b.table; });
}

TableDefinition Database::MakeDefinition(std::uint32_t table) const {
  const std::string_view name = m_strings.Text(table);
  const auto [begin, end] = FindColumnRows(table);
  if (begin == end) {
    ThrowDamage(DamagedPart::Table, MakeTableSubject(name), " has no columns.");
  }
  TableDefinition definition{name, {}};
  definition.columns.reserve(static_cast<std::size_t>(end - begin));
  for (auto row = begin; row != end; ++row) {
    const std::ptrdiff_t expected = row - begin + 1;
    if (row->number != expected) {
      ThrowDamage(DamagedPart::Table, MakeTableSubject(name), " has column ", row->number,
                  " where column ", expected, " belongs.");
    }
    definition.columns.push_back(MakeColumn(*row));
  }
  return definition;
}

Column Database::MakeColumn(const ColumnRow& row) const {
  const std::string_view name = m_strings.Text(row.name);
  const bool isKey = (row.type & kKeyBit) != 0;
  const bool isNullable = (row.type & kNullableBit) != 0;
  if ((row.type & ~kNullableBit) == (kTextBit | kValidBit)) {
    return {name, ColumnKind::Stream, 2, isKey, isNullable};
  }
  if ((row.type & kTextBit) != 0) {
    return {name,  ColumnKind::Text, m_strings.ReferenceSize(),
            isKey, isNullable,       row.type & kSizeBits};
  }
  if (IntegerCellSize(row.type) == 0) {
    ThrowDamage(DamagedPart::Table, "Column ", Quote(name), " of table ",
                Quote(m_strings.Text(row.table)), " has numbers of ", row.type & kSizeBits,
                " bytes.");
  }
  const unsigned size = IntegerCellSize(row.type);
  return {name, ColumnKind::Integer, size, isKey, isNullable, size};
}

TableRows Database::ReadTable(std::string_view name) {
  const std::uint32_t table = FindTable(name);
  if (table == 0) {
    ThrowDamage(DamagedPart::Table, "There is no table ", Quote(name), '.');
  }
  TableDefinition definition = MakeDefinition(table);
  Bytes bytes = ReadTableStream(name, DamagedPart::Table, MakeTableSubject(name));
  return {std::move(definition), std::move(bytes), m_strings};
}

std::optional<SummaryInformation> Database::ReadSummary() {
  const auto stream = m_file.FindStream(kSummaryName);
  if (!stream) {
    return std::nullopt;
  }
  // Callers keep a copy of the text for each property, and all properties may share one text.
  constexpr std::uint64_t kMost = 1 << 20;
  if (stream->size > kMost) {
    ThrowDamage(DamagedPart::Summary, "The summary information has ", stream->size, " bytes, and ",
                kMost, " are read at most.");
  }
  return SummaryInformation(m_file.Read(*stream, DamagedPart::Summary, "The summary information"));
}

std::optional<std::string> Database::UnknownKind() const {
  if (const auto version = m_file.FindUnknownVersion()) {
    return Concatenate("version ", *version, " of the format of compound files");
  }
  return std::nullopt;
}

void Database::Verify() {
  // Tables that share their bytes could take far longer to read than the size of the file
  // justifies.
  std::uint64_t left = m_file.Size();
  for (const std::uint32_t table : m_tables) {
    const TableRows rows = ReadTable(m_strings.Text(table));
    if (rows.Size() > left) {
      ThrowDamage(DamagedPart::Structure, "The tables claim more bytes than the file has.");
    }
    left -= rows.Size();
    for (std::size_t column = 0; column < rows.Definition().columns.size(); ++column) {
      if (rows.Definition().columns[column].kind == ColumnKind::Text) {
        for (std::size_t row = 0; row < rows.Count(); ++row) {
          rows.StringNumber(row, column);
        }
      }
    }
  }
  const auto summary = ReadSummary();
  if (summary && summary->FindPropertyOfUnknownType()) {
    ThrowDamage(DamagedPart::Summary, "Property ", *summary->FindPropertyOfUnknownType(),
                " of the summary information is of an unknown type.");
  }
}

std::vector<Defect> Database::Defects() const {
  std::vector<Defect> defects = m_file.Defects();
  if (m_strings.UnusedBytes() > 0) {
    defects.push_back(
        {Defect::Grade::Harmless, Concatenate("The string data has ", m_strings.UnusedBytes(),
                                              " bytes that belong to no string.")});
  }
  if (m_isTableNamedTwice) {
    defects.push_back({Defect::Grade::Suspicious, "Table \"_Tables\" names a table twice."});
  }
  const std::set<std::uint32_t> tables(m_tables.begin(), m_tables.end());
  const auto stray = std::find_if(m_columns.begin(), m_columns.end(), [&](const ColumnRow& row) {
    return tables.count(row.table) == 0;
  });
  if (stray != m_columns.end()) {
    defects.push_back(
        {Defect::Grade::Suspicious,
         Concatenate("Table \"_Columns\" has columns of ", Quote(m_strings.Text(stray->table)),
                     ", which table \"_Tables\" does not name.")});
  }
  return defects;
}

}  // namespace qm::image
