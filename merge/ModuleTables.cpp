#include "merge/ModuleTables.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

#include "merge/Hashing.h"
#include "text/Ascii.h"
#include "text/Utf.h"

namespace qm::merge {

namespace {

/// Converts bytes in a code page that is not available: replaces all but ASCII with "?".
std::string ReplaceAllButAscii(std::string_view bytes) {
  std::string text(bytes);
  std::replace_if(
      text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; },
      '?');
  return text;
}

std::uint32_t ReadNumber(const std::uint8_t* bytes, unsigned size) noexcept {
  std::uint32_t value = 0;
  for (unsigned i = size; i > 0; --i) {
    value = value << 8U | bytes[i - 1];
  }
  return value;
}

}  // namespace

std::optional<std::size_t> Table::FindColumn(std::string_view name) const noexcept {
  const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                  [&](const Column& column) { return column.name == name; });
  return found == m_columns.end()
             ? std::nullopt
             : std::optional(static_cast<std::size_t>(found - m_columns.begin()));
}

std::uint32_t Table::Cell(std::size_t row, std::size_t column) const noexcept {
  const unsigned size = m_columns[column].size;
  return ReadNumber(m_cells.data() + m_columns[column].offset * m_rowsInFile + row * size, size);
}

std::uint32_t Table::TextNumber(std::size_t row, std::size_t column) const noexcept {
  return m_columns[column].kind == image::ColumnKind::Text ? Cell(row, column) : 0;
}

std::string_view Table::Text(std::size_t row, std::size_t column) const noexcept {
  return m_owner->Text(TextNumber(row, column));
}

std::optional<std::int32_t> Table::Number(std::size_t row, std::size_t column) const noexcept {
  const std::uint32_t cell =
      m_columns[column].kind == image::ColumnKind::Integer ? Cell(row, column) : 0;
  if (cell == 0) {
    return std::nullopt;
  }
  // Numbers are stored with an offset, so that 0 means null.
  return static_cast<std::int32_t>(cell - (1U << (8 * m_columns[column].size - 1)));
}

const Table::Stream* Table::FindStream(std::size_t row, std::size_t column) const noexcept {
  const std::size_t cell = row * m_columns.size() + column;
  const auto found = std::lower_bound(
      m_streams.begin(), m_streams.end(), cell,
      [](const Stream& stream, std::size_t wanted) { return stream.cell < wanted; });
  return found == m_streams.end() || found->cell != cell ? nullptr : &*found;
}

std::optional<std::uint64_t> Table::StreamSize(std::size_t row, std::size_t column) const noexcept {
  const Stream* const stream = FindStream(row, column);
  return stream ? std::optional(stream->size) : std::nullopt;
}

std::optional<std::uint64_t> Table::StreamHash(std::size_t row, std::size_t column) const noexcept {
  const Stream* const stream = FindStream(row, column);
  return stream ? stream->hash : std::nullopt;
}

std::string Table::Format(std::size_t row, std::size_t column) const {
  if (IsNull(row, column)) {
    return {};
  }
  switch (m_columns[column].kind) {
    case image::ColumnKind::Text:
      return std::string(Text(row, column));
    case image::ColumnKind::Integer:
      return std::to_string(*Number(row, column));
    default:
      const auto size = StreamSize(row, column);
      return size ? "binary of " + std::to_string(*size) + (*size == 1 ? " byte" : " bytes")
                  : "binary that the file lacks";
  }
}

/// Reads a database into a ModuleTables.
class ModuleTables::Reader {
 public:
  Reader(ModuleTables& tables, image::Database& database, const DecodeText& decode,
         SharedStreams* shared)
      : m_tables(tables), m_database(database), m_decode(decode), m_shared(shared) {}

  void Read() {
    ReadTexts();
    const std::vector<std::string_view> names = m_database.TableNames();
    m_tables.m_tables.reserve(names.size());
    for (const std::string_view name : names) {
      ReadTable(name);
    }
    m_tables.m_byName.resize(names.size());
    for (std::uint32_t i = 0; i < m_tables.m_byName.size(); ++i) {
      m_tables.m_byName[i] = i;
    }
    const auto nameAt = [&](std::uint32_t position) { return m_tables.m_tables[position].Name(); };
    std::sort(m_tables.m_byName.begin(), m_tables.m_byName.end(),
              [&](std::uint32_t a, std::uint32_t b) { return nameAt(a) < nameAt(b); });
    if (m_takesTexts) {
      std::tie(m_tables.m_texts, m_tables.m_ends) = m_database.TakeStrings().Take();
    }
    if (m_shared) {
      ReadSharedStreams();
    }
  }

 private:
  void ReadTexts() {
    const image::StringPool& pool = m_database.Strings();
    m_tables.m_codePage = pool.CodePage();
    const std::string_view data = pool.Data();
    const bool isAsciiSuperset = text::IsAsciiSuperset(pool.CodePage());
    m_takesTexts = isAsciiSuperset && text::IsAscii(data) && data.find('\0') == data.npos;
    if (m_takesTexts) {
      return;
    }
    m_tables.m_ends.reserve(pool.EndNumber());
    m_tables.m_texts.reserve(data.size());
    m_tables.m_ends.push_back(0);
    for (std::uint32_t number = 1; number < pool.EndNumber(); ++number) {
      std::string_view bytes = pool.Text(number);
      bytes = bytes.substr(0, bytes.find('\0'));  // the installer ends a text at its first zero
      if (bytes.empty() || (isAsciiSuperset && text::IsAscii(bytes))) {
        AddText(bytes);
      } else {
        AddText(Decode(bytes));
      }
    }
    m_tables.m_texts.shrink_to_fit();
  }

  void AddText(std::string_view text) {
    image::Bytes& texts = m_tables.m_texts;
    if (text.size() > std::numeric_limits<std::uint32_t>::max() - texts.size()) {
      AddFailure("The texts take more than 4 GB.");
      text = {};
    }
    texts.insert(texts.end(), text.begin(), text.end());
    m_tables.m_ends.push_back(static_cast<std::uint32_t>(texts.size()));
  }

  std::string Decode(std::string_view bytes) {
    if (auto text = m_decode(bytes, m_tables.m_codePage)) {
      return *std::move(text);
    }
    AddFailure("The texts are in code page " + std::to_string(m_tables.m_codePage) +
               ", which this system does not have.");
    return ReplaceAllButAscii(bytes);
  }

  /// Returns the converted text of a view into the database's strings.
  std::string_view Convert(std::string_view name) const noexcept {
    return m_takesTexts ? name : m_tables.Text(m_database.Strings().FindNumber(name));
  }

  void ReadTable(std::string_view name) {
    Table& table = m_tables.m_tables.emplace_back();
    table.m_owner = &m_tables;
    table.m_name = Convert(name);
    try {
      image::TableRows rows = m_database.ReadTable(name);
      // Tables that share their bytes could take far more memory than the size of the file
      // justifies.
      if (rows.Size() > m_left) {
        image::ThrowDamage(image::DamagedPart::Structure,
                           "The tables claim more bytes than the file has.");
      }
      m_left -= rows.Size();
      ReadRows(std::move(rows), table);
    } catch (const image::Damage& damage) {
      table.m_failure = damage.what();
      AddFailure(table.m_failure);
    }
  }

  void ReadRows(image::TableRows rows, Table& table) {
    table.m_rowsInFile = rows.Count();
    try {
      for (; table.m_rowCount < rows.Count(); ++table.m_rowCount) {
        ReadRow(rows, table.m_rowCount, table);
      }
    } catch (const image::Damage& damage) {
      table.m_failure = damage.what();
      AddFailure(table.m_failure);
    }
    std::tie(table.m_columns, table.m_cells) = rows.Take();
    for (Column& column : table.m_columns) {
      column.name = Convert(column.name);
    }
  }

  /// Checks that the texts of a row exist and records the size of its data.
  void ReadRow(const image::TableRows& rows, std::size_t row, Table& table) {
    const std::vector<Column>& columns = rows.Definition().columns;
    for (std::size_t column = 0; column < columns.size(); ++column) {
      if (columns[column].kind == image::ColumnKind::Text) {
        rows.StringNumber(row, column);
      }
    }
    for (std::size_t column = 0; column < columns.size(); ++column) {
      if (columns[column].kind == image::ColumnKind::Stream) {
        const auto found = m_database.FindRowStream(rows, row, column, [&](std::string_view bytes) {
          return text::ToUtf16(text::IsAscii(bytes) ? std::string(bytes) : Decode(bytes));
        });
        if (found) {
          table.m_streams.push_back({row * columns.size() + column, found->size});
          m_streams.push_back({m_tables.m_tables.size() - 1, table.m_streams.size() - 1, *found});
        }
      }
    }
  }

  /// Reads the data that another module may have too.
  void ReadSharedStreams() {
    std::uint64_t left = m_database.Size();  // cells may share bytes of the file
    for (const FoundStream& found : m_streams) {
      Table& table = m_tables.m_tables[found.table];
      Table::Stream& stream = table.m_streams[found.number];
      if (m_shared->Note(Identify(table, stream)) && stream.size <= left) {
        left -= stream.size;
        try {
          const image::Bytes bytes = m_database.ReadRowStream(found.stream);
          stream.hash =
              HashText(kHashSeed, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        } catch (const image::Damage&) {
          stream.hash.reset();  // only the sizes are compared then
        }
      }
    }
  }

  /// Returns a hash of what data of several modules must have in common to be compared.
  static std::uint64_t Identify(const Table& table, const Table::Stream& stream) {
    const std::size_t row = stream.cell / table.Columns().size();
    const std::size_t column = stream.cell % table.Columns().size();
    std::uint64_t hash = HashNumber(HashText(kHashSeed, table.Name()), column);
    for (std::size_t i = 0; i < table.Columns().size(); ++i) {
      if (table.Columns()[i].isKey) {
        hash = HashText(hash, table.Format(row, i));
      }
    }
    return HashNumber(hash, stream.size);
  }

  void AddFailure(const std::string& failure) {
    if (m_tables.m_failure.empty()) {
      m_tables.m_failure = failure;
    }
  }

  struct FoundStream {
    std::size_t table;   ///< position in ModuleTables::m_tables
    std::size_t number;  ///< position in Table::m_streams
    image::CompoundFile::Stream stream;
  };

  ModuleTables& m_tables;
  image::Database& m_database;
  const DecodeText& m_decode;
  SharedStreams* m_shared;
  std::vector<FoundStream> m_streams;
  bool m_takesTexts = false;  ///< the texts of the database are ASCII and need no conversion
  std::uint64_t m_left = m_database.Size();  ///< bytes that further tables may have
};

ModuleTables::ModuleTables(image::Database& database, const DecodeText& decode,
                           SharedStreams* shared) {
  Reader(*this, database, decode, shared).Read();
}

std::string_view ModuleTables::Text(std::uint32_t number) const noexcept {
  return number == 0
             ? std::string_view()
             : std::string_view(reinterpret_cast<const char*>(m_texts.data()) + m_ends[number - 1],
                                m_ends[number] - m_ends[number - 1]);
}

const Table* ModuleTables::Find(std::string_view name) const noexcept {
  const auto found = std::lower_bound(m_byName.begin(), m_byName.end(), name,
                                      [&](std::uint32_t position, std::string_view wanted) {
                                        return m_tables[position].Name() < wanted;
                                      });
  return found == m_byName.end() || m_tables[*found].Name() != name ? nullptr : &m_tables[*found];
}

}  // namespace qm::merge
