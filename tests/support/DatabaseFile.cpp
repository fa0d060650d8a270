#include "tests/support/DatabaseFile.h"

#include <algorithm>
#include <cstring>

#include "image/StreamName.h"

namespace qm::tests {

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::size_t kMiniLimit = 4096;

void Append(image::Bytes& bytes, std::uint32_t value, unsigned size) {
  for (unsigned i = 0; i < size; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  }
}

void Append(image::Bytes& bytes, std::string_view text) {
  bytes.insert(bytes.end(), text.begin(), text.end());
}

void Pad(image::Bytes& bytes, std::size_t unit, std::uint8_t padding = 0) {
  bytes.resize((bytes.size() + unit - 1) / unit * unit, padding);
}

std::uint32_t Units(std::uint64_t size, std::uint64_t unit) {
  return static_cast<std::uint32_t>((size + unit - 1) / unit);
}

/// Chains `count` units from the end of an allocation table on; returns the first one.
std::uint32_t AppendChain(std::vector<std::uint32_t>& table, std::uint32_t count) {
  const auto first = static_cast<std::uint32_t>(table.size());
  for (std::uint32_t i = 1; i <= count; ++i) {
    table.push_back(i < count ? first + i : kEndOfChain);
  }
  return count > 0 ? first : kEndOfChain;
}

}  // namespace

void MemorySource::Read(std::uint64_t offset, void* bytes, std::size_t count) {
  if (++reads == failingRead) {
    throw ReadFailure();
  }
  if (count > m_size || offset > m_size - count) {
    std::terminate();  // the reader broke its promise
  }
  bytesRead += count;
  const std::size_t begin =
      static_cast<std::size_t>(std::min<std::uint64_t>(offset, m_bytes.size()));
  const std::size_t present = std::min(count, m_bytes.size() - begin);
  std::memset(bytes, 0, count);
  if (present > 0) {
    std::memcpy(bytes, m_bytes.data() + begin, present);
  }
}

std::size_t CompoundFileImage::Entry(const std::u16string& name) const {
  const auto found = std::find_if(streams.begin(), streams.end(),
                                  [&](const Stream& stream) { return stream.name == name; });
  return Sector(directory) + 128 * static_cast<std::size_t>(found - streams.begin() + 1);
}

std::size_t CompoundFileImage::MiniData(const std::u16string& name) const {
  return Sector(miniStream) + 64 * std::size_t{firstSectors.at(name)};
}

void CompoundFileImage::Put(std::size_t offset, unsigned width, std::uint32_t value) {
  for (unsigned i = 0; i < width; ++i) {
    bytes.at(offset + i) = static_cast<std::uint8_t>(value >> 8 * i);
  }
}

CompoundFileImage WriteCompoundFile(std::vector<Stream> streams, unsigned sectorShift) {
  const std::size_t sectorSize = std::size_t{1} << sectorShift;
  const auto perSector = static_cast<std::uint32_t>(sectorSize / 4);
  std::sort(streams.begin(), streams.end(), [](const Stream& a, const Stream& b) {
    return a.name.size() != b.name.size() ? a.name.size() < b.name.size() : a.name < b.name;
  });

  image::Bytes mini;
  std::vector<std::uint32_t> miniChains;
  std::map<std::u16string, std::uint32_t> firstSectors;
  std::uint64_t dataSectors = 0;
  for (const Stream& stream : streams) {
    const std::uint64_t size = stream.bytes.size() + stream.hole;
    if (size < kMiniLimit) {
      firstSectors[stream.name] = AppendChain(miniChains, Units(size, 64));
      mini.insert(mini.end(), stream.bytes.begin(), stream.bytes.end());
      Pad(mini, 64);
    } else {
      dataSectors += Units(size, sectorSize);
    }
  }
  const std::uint32_t directorySectors = Units((streams.size() + 1) * 128, sectorSize);
  const std::uint32_t miniTableSectors = Units(miniChains.size() * 4, sectorSize);
  dataSectors += directorySectors + miniTableSectors + Units(mini.size(), sectorSize);

  // The table has entries for its own sectors and for those that list them.
  std::uint32_t tableSectors = 0;
  std::uint32_t listSectors = 0;
  while (std::uint64_t{tableSectors} * perSector < dataSectors + tableSectors + listSectors) {
    ++tableSectors;
    listSectors = tableSectors > 109 ? Units(tableSectors - 109, perSector - 1) : 0;
  }
  std::vector<std::uint32_t> table(tableSectors, 0xFFFFFFFD);
  table.resize(tableSectors + listSectors, 0xFFFFFFFC);

  CompoundFileImage file{};
  file.sectorShift = sectorShift;
  file.directory = AppendChain(table, directorySectors);
  file.miniTable = AppendChain(table, miniTableSectors);
  file.miniStream = AppendChain(table, Units(mini.size(), sectorSize));
  image::Bytes data;
  for (const Stream& stream : streams) {
    const std::uint64_t size = stream.bytes.size() + stream.hole;
    if (size >= kMiniLimit) {
      firstSectors[stream.name] = AppendChain(table, Units(size, sectorSize));
      data.insert(data.end(), stream.bytes.begin(), stream.bytes.end());
      if (stream.hole == 0) {
        Pad(data, sectorSize);
      }
    }
  }
  file.size = (table.size() + 1) * std::uint64_t{sectorSize};

  image::Bytes& bytes = file.bytes;
  bytes = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
  bytes.resize(0x4C);
  for (std::uint32_t i = 0; i < 109; ++i) {
    Append(bytes, i < tableSectors ? i : kNone, 4);
  }
  Pad(bytes, sectorSize);
  file.Put(0x18, 2, 0x3E);
  file.Put(0x1A, 2, sectorShift == 9 ? 3 : 4);
  file.Put(0x1C, 2, 0xFFFE);
  file.Put(0x1E, 2, sectorShift);
  file.Put(0x20, 2, 6);
  file.Put(0x2C, 4, tableSectors);
  file.Put(0x30, 4, file.directory);
  file.Put(0x38, 4, kMiniLimit);
  file.Put(0x3C, 4, file.miniTable);
  file.Put(0x40, 4, miniTableSectors);
  file.Put(0x44, 4, listSectors > 0 ? tableSectors : kEndOfChain);
  file.Put(0x48, 4, listSectors);

  for (const std::uint32_t next : table) {
    Append(bytes, next, 4);
  }
  Pad(bytes, sectorSize, 0xFF);
  for (std::uint32_t list = 0; list < listSectors; ++list) {
    for (std::uint32_t i = 0; i + 1 < perSector; ++i) {
      const std::uint32_t part = 109 + list * (perSector - 1) + i;
      Append(bytes, part < tableSectors ? part : kNone, 4);
    }
    Append(bytes, list + 1 < listSectors ? tableSectors + list + 1 : kEndOfChain, 4);
  }

  const auto appendEntry = [&](std::u16string_view name, std::uint32_t type, std::uint32_t right,
                               std::uint32_t child, std::uint32_t first, std::uint64_t size) {
    const std::size_t entry = bytes.size();
    for (const char16_t character : name) {
      Append(bytes, character, 2);
    }
    bytes.resize(entry + 0x40);
    Append(bytes, static_cast<std::uint32_t>(2 * name.size() + 2) | type << 16U | 1U << 24U, 4);
    Append(bytes, kNone, 4);
    Append(bytes, right, 4);
    Append(bytes, child, 4);
    bytes.resize(entry + 0x74);
    Append(bytes, first, 4);
    Append(bytes, static_cast<std::uint32_t>(size), 4);
    Append(bytes, static_cast<std::uint32_t>(size >> 32U), 4);
  };
  // The tree of streams is a list.
  appendEntry(u"Root Entry", 5, kNone, streams.empty() ? kNone : 1, file.miniStream, mini.size());
  for (std::uint32_t i = 0; i < streams.size(); ++i) {
    const Stream& stream = streams[i];
    appendEntry(stream.name, 2, i + 1 < streams.size() ? i + 2 : kNone, kNone,
                firstSectors[stream.name], stream.bytes.size() + stream.hole);
  }
  Pad(bytes, sectorSize);

  for (const std::uint32_t next : miniChains) {
    Append(bytes, next, 4);
  }
  Pad(bytes, sectorSize, 0xFF);
  bytes.insert(bytes.end(), mini.begin(), mini.end());
  Pad(bytes, sectorSize);
  bytes.insert(bytes.end(), data.begin(), data.end());

  file.streams = std::move(streams);
  file.firstSectors = std::move(firstSectors);
  return file;
}

std::u16string TableStream(std::string_view table) {
  return image::EncodeStreamName(table, image::StreamKind::Table);
}

std::u16string RowStream(std::u16string_view name) {
  return image::EncodeStreamName(name, image::StreamKind::Other);
}

std::vector<Stream> WriteDatabase(const DatabaseImage& database) {
  std::map<std::string, std::uint32_t> numbers{{"", 0}};
  image::Bytes pool;
  image::Bytes data;
  Append(pool, database.codePage | (database.referenceSize == 3 ? 0x80000000 : 0), 4);
  std::uint32_t lastNumber = 0;
  const auto numberOf = [&](const std::string& text) {
    const auto [place, isNew] = numbers.emplace(text, lastNumber + 1);
    if (isNew) {
      ++lastNumber;
      if (text.size() > 0xFFFF) {
        Append(pool, static_cast<std::uint32_t>(text.size() & 0xFFFF0000), 4);
      }
      Append(pool, static_cast<std::uint32_t>(text.size() & 0xFFFF) | 1U << 16U, 4);
      Append(data, text);
    }
    return place->second;
  };
  const auto appendCell = [&](image::Bytes& bytes, unsigned type, const Cell& cell) {
    const bool isText = (type & 0x0800U) != 0 && type != kData && type != (kData | kNullable);
    const unsigned size = isText ? database.referenceSize : (type & 0xFFU) == 4 ? 4 : 2;
    if (const auto* const text = std::get_if<std::string>(&cell)) {
      Append(bytes, numberOf(*text), size);
    } else if (const auto* const number = std::get_if<std::int32_t>(&cell)) {
      const bool isData = (type & 0x0800U) != 0;
      Append(bytes, static_cast<std::uint32_t>(*number) ^ (isData ? 0 : 1U << (8 * size - 1)),
             size);
    } else {
      Append(bytes, 0, size);
    }
  };

  TableImage tables{"_Tables", {{"Name", kText | kKey}}, {}};
  TableImage columns{
      "_Columns",
      {{"Table", kText | kKey}, {"Number", kShort | kKey}, {"Name", kText}, {"Type", kShort}},
      {}};
  for (const TableImage& table : database.tables) {
    tables.rows.push_back({table.name});
    std::int32_t number = 0;
    for (const auto& [name, type] : table.columns) {
      columns.rows.push_back({table.name, ++number, name, static_cast<std::int16_t>(type)});
    }
  }

  std::vector<Stream> streams = database.streams;
  const auto appendTable = [&](const TableImage& table) {
    image::Bytes bytes;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      for (const std::vector<Cell>& row : table.rows) {
        appendCell(bytes, table.columns[column].second, row[column]);
      }
    }
    if (!table.rows.empty()) {
      streams.push_back({TableStream(table.name), std::move(bytes)});
    }
  };
  appendTable(tables);
  appendTable(columns);
  for (const TableImage& table : database.tables) {
    appendTable(table);
  }
  streams.push_back({TableStream("_StringPool"), std::move(pool)});
  streams.push_back({TableStream("_StringData"), std::move(data)});
  return streams;
}

Stream WriteSummary(unsigned codePage, const std::map<std::uint32_t, std::string>& texts) {
  image::Bytes properties;
  image::Bytes values;
  const auto count = static_cast<std::uint32_t>(texts.size() + 1);
  const auto appendProperty = [&](std::uint32_t number, std::uint32_t type) {
    Append(properties, number, 4);
    Append(properties, static_cast<std::uint32_t>(8 + 8 * count + values.size()), 4);
    Append(values, type, 4);
  };
  appendProperty(1, 2);
  Append(values, codePage, 4);
  for (const auto& [number, text] : texts) {
    appendProperty(number, 30);
    Append(values, static_cast<std::uint32_t>(text.size() + 1), 4);
    Append(values, text);
    values.push_back(0);
    Pad(values, 4);
  }

  image::Bytes bytes;
  Append(bytes, 0xFFFE, 4);
  bytes.resize(24);
  Append(bytes, 1, 4);
  bytes.insert(bytes.end(), {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10, 0xAB, 0x91, 0x08, 0x00,
                             0x2B, 0x27, 0xB3, 0xD9});
  Append(bytes, 48, 4);
  Append(bytes, static_cast<std::uint32_t>(8 + properties.size() + values.size()), 4);
  Append(bytes, count, 4);
  bytes.insert(bytes.end(), properties.begin(), properties.end());
  bytes.insert(bytes.end(), values.begin(), values.end());
  return {u"\005SummaryInformation", std::move(bytes)};
}

}  // namespace qm::tests
