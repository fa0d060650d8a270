#include "image/CompoundFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

#include "image/StreamName.h"

namespace qm::image {

namespace {

constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kPageSize = 16384;
// The most bytes that one read returns. The parts of a sound database are far smaller, and reading
// a larger one could exhaust the memory.
constexpr std::uint64_t kMaxReadSize = 256 << 20;
constexpr std::size_t kEntrySize = 128;
constexpr std::size_t kMiniSectorSize = 64;
// Streams of at least this size are stored in whole sectors.
constexpr std::uint64_t kMiniStreamLimit = 4096;

constexpr std::uint32_t kLastSector = 0xFFFFFFFA;  // greater numbers are reserved
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;

constexpr std::uint8_t kSignature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

char16_t ToUpper(char16_t character) noexcept {
  return character >= u'a' && character <= u'z' ? static_cast<char16_t>(character - u'a' + u'A')
                                                : character;
}

/// Returns whether a name is less than another of the same length, ignoring the case of ASCII
/// letters.
bool IsLess(std::u16string_view a, std::u16string_view b) noexcept {
  const auto [left, right] = std::mismatch(
      a.begin(), a.end(), b.begin(),
      [](char16_t one, char16_t other) { return one == other || ToUpper(one) == ToUpper(other); });
  return left != a.end() && ToUpper(*left) < ToUpper(*right);
}

/// Returns the reason for refusing a file that does not begin as a compound file does.
std::string_view ExplainRefusal(const Bytes& front) noexcept {
  const auto beginsWith = [&](std::string_view text) {
    return front.size() >= text.size() && std::memcmp(front.data(), text.data(), text.size()) == 0;
  };
  return front.empty()              ? "The file is empty."
         : beginsWith("MSCF")       ? "The file is a cabinet, not an installer database."
         : beginsWith("MZ")         ? "The file is a program, not an installer database."
         : beginsWith("PK\x03\x04") ? "The file is a ZIP archive, not an installer database."
                                    : "The file is not an installer database.";
}

}  // namespace

/// An entry of the directory.
class CompoundFile::Entry {
 public:
  enum Type : std::uint8_t { kStorage = 1, kStream = 2, kRoot = 5 };

  static constexpr std::size_t kNameSize = 0x40;

  Entry(const std::uint8_t* bytes, unsigned majorVersion) noexcept
      : m_bytes(bytes), m_majorVersion(majorVersion) {}

  /// Appends the name to `names`.
  void AppendName(std::u16string& names) const {
    const unsigned size = ReadU16(m_bytes + 0x40);  // in bytes, with the terminator
    if (size < 2 || size > kNameSize || size % 2 != 0) {
      ThrowDamage(DamagedPart::Structure, "The directory has an entry whose name takes up ", size,
                  " bytes.");
    }
    for (unsigned i = 0; i + 2 < size; i += 2) {
      names += static_cast<char16_t>(ReadU16(m_bytes + i));
    }
  }

  /// Returns whether the first zero of the name is where it should be according to the entry's
  /// size.
  bool EndsWithItsSize(std::u16string_view name) const noexcept {
    return name.find(u'\0') == name.npos && ReadU16(m_bytes + 2 * name.size()) == 0;
  }

  Type GetType() const noexcept { return static_cast<Type>(m_bytes[0x42]); }
  std::uint32_t Left() const noexcept { return ReadU32(m_bytes + 0x44); }
  std::uint32_t Right() const noexcept { return ReadU32(m_bytes + 0x48); }
  std::uint32_t Child() const noexcept { return ReadU32(m_bytes + 0x4C); }

  Stream Extent() const noexcept {
    // Writers of version 3 leave garbage in the upper half of the size.
    const std::uint64_t size =
        m_majorVersion == 3 ? ReadU32(m_bytes + 0x78) : ReadU64(m_bytes + 0x78);
    return {ReadU32(m_bytes + 0x74), size};
  }

 private:
  const std::uint8_t* m_bytes;
  unsigned m_majorVersion;
};

/// The order of the directory's tree: shorter names first.
bool CompoundFile::IsBefore(std::u16string_view a, std::u16string_view b) noexcept {
  return a.size() != b.size() ? a.size() < b.size() : IsLess(a, b);
}

CompoundFile::CompoundFile(ByteSource& source) : m_source(source) {
  ReadHeader();
  ReadDirectory();
}

void CompoundFile::ReadHeader() {
  const Bytes& front = LoadPage(0);
  if (front.size() < sizeof kSignature ||
      std::memcmp(front.data(), kSignature, sizeof kSignature) != 0) {
    ThrowDamage(DamagedPart::NoDatabase, ExplainRefusal(front));
  }
  if (front.size() < kHeaderSize) {
    ThrowDamage(DamagedPart::Structure, "The file ends inside its header, after ", front.size(),
                " of 512 bytes.");
  }
  const std::uint8_t* const bytes = front.data();
  m_header.majorVersion = ReadU16(bytes + 0x1A);
  m_header.sectorShift = ReadU16(bytes + 0x1E);
  if (ReadU16(bytes + 0x1C) != 0xFFFE) {
    ThrowDamage(DamagedPart::Structure, "The header has no byte-order mark.");
  }
  if (m_header.sectorShift != 9 && m_header.sectorShift != 12) {
    ThrowDamage(DamagedPart::Structure, "The header states a sector size of 2 to the power of ",
                m_header.sectorShift, " bytes.");
  }
  if ((m_header.majorVersion == 3 && m_header.sectorShift != 9) ||
      (m_header.majorVersion == 4 && m_header.sectorShift != 12)) {
    ThrowDamage(DamagedPart::Structure, "The header states a sector size of ", SectorSize(),
                " bytes, which version ", m_header.majorVersion, " does not have.");
  }
  if (ReadU16(bytes + 0x20) != 6 || ReadU32(bytes + 0x38) != kMiniStreamLimit) {
    ThrowDamage(DamagedPart::Structure,
                "The header states a mini sector size of 2 to the power of ", ReadU16(bytes + 0x20),
                " bytes and a limit of ", ReadU32(bytes + 0x38), " bytes.");
  }
  // Sector 0 follows the header, which occupies a whole sector. Only files of 2 TB would need
  // numbers from kLastSector on.
  const std::uint64_t behindHeader =
      m_source.Size() > SectorSize() ? m_source.Size() - SectorSize() : 0;
  m_sectorCount = std::min<std::uint64_t>((behindHeader + SectorSize() - 1) >> m_header.sectorShift,
                                          kLastSector);

  m_header.tableSectors = ReadU32(bytes + 0x2C);
  if (m_header.tableSectors > m_sectorCount) {
    ThrowDamage(DamagedPart::Structure, "The allocation table claims ", m_header.tableSectors,
                " of ", m_sectorCount, " sectors.");
  }
  m_header.firstDirectory = ReadU32(bytes + 0x30);
  m_header.firstMiniTable = ReadU32(bytes + 0x3C);
  m_header.firstTableList = ReadU32(bytes + 0x44);
  for (std::size_t i = 0; i < m_header.tableList.size(); ++i) {
    m_header.tableList[i] = ReadU32(bytes + 0x4C + 4 * i);
  }
  m_nextTableList = m_header.firstTableList;
}

/// Reads the whole tree of the root's entries. It need not be balanced: some writers make it a
/// list, in which a search would take linear time.
void CompoundFile::ReadDirectory() {
  ReadChain(m_header.firstDirectory, m_sectorCount, DamagedPart::Structure, "The directory",
            m_chain);
  const Bytes directory = ReadSectors(m_chain);
  const std::size_t count = directory.size() / kEntrySize;
  const auto entryAt = [&](std::size_t index) {
    return Entry(directory.data() + kEntrySize * index, m_header.majorVersion);
  };
  if (count == 0 || entryAt(0).GetType() != Entry::kRoot) {
    ThrowDamage(DamagedPart::Structure, "The directory does not begin with its root.");
  }
  m_root = entryAt(0).Extent();

  // A subtree, with the names between which those in it must lie; or, if isEntry, an entry whose
  // left subtree has been visited.
  struct Waiting {
    std::uint32_t index;
    const std::u16string_view* above;
    const std::u16string_view* below;
    bool isEntry;
  };
  m_names.reserve(count * Entry::kNameSize / 2);  // never reallocated: views refer to it
  m_streams.reserve(count);
  std::vector<std::u16string_view> names(count);  // of visited entries; null data for the others
  names[0] = m_names;
  std::vector<Waiting> waiting;
  waiting.reserve(count + 1);
  waiting.push_back({entryAt(0).Child(), nullptr, nullptr, false});
  while (!waiting.empty()) {
    const auto [index, above, below, isEntry] = waiting.back();
    waiting.pop_back();
    if (index == kNoEntry) {
      continue;
    }
    if (isEntry) {
      if (entryAt(index).GetType() == Entry::kStream) {
        m_streams.push_back({names[index], entryAt(index).Extent()});
      }
      continue;
    }
    if (index >= count) {
      ThrowDamage(DamagedPart::Structure, "The directory refers to entry ", index, " of ", count,
                  '.');
    }
    if (names[index].data()) {
      ThrowDamage(DamagedPart::Structure, "The directory refers to entry ", index, " twice.");
    }
    const Entry entry = entryAt(index);
    const std::size_t begin = m_names.size();
    entry.AppendName(m_names);
    const std::u16string_view& name = names[index] = std::u16string_view(m_names).substr(begin);
    m_isInOrder =
        m_isInOrder && (!above || IsBefore(*above, name)) && (!below || IsBefore(name, *below));
    m_hasSizesOfNames = m_hasSizesOfNames && entry.EndsWithItsSize(name);
    waiting.push_back({entry.Right(), &name, below, false});
    waiting.push_back({index, nullptr, nullptr, true});
    waiting.push_back({entry.Left(), above, &name, false});
  }
  if (!m_isInOrder) {
    SortStreams();
  }
}

void CompoundFile::SortStreams() {
  // Keeps the first of several streams with the same name. Their names are in m_names in the order
  // of the entries.
  std::sort(m_streams.begin(), m_streams.end(), [](const NamedStream& a, const NamedStream& b) {
    return IsBefore(a.name, b.name) ||
           (!IsBefore(b.name, a.name) && std::less<>()(a.name.data(), b.name.data()));
  });
  const auto isSame = [](const NamedStream& before, const NamedStream& after) {
    return !IsBefore(before.name, after.name);
  };
  m_streams.erase(std::unique(m_streams.begin(), m_streams.end(), isSame), m_streams.end());
}

const Bytes& CompoundFile::LoadPage(std::uint64_t number) {
  const auto found = std::find_if(m_pages.begin(), m_pages.end(),
                                  [&](const Page& page) { return page.number == number; });
  if (found != m_pages.end()) {
    return found->bytes;
  }
  const std::uint64_t offset = number * kPageSize;
  const std::uint64_t left = m_source.Size() - std::min(offset, m_source.Size());
  Bytes bytes(static_cast<std::size_t>(std::min<std::uint64_t>(kPageSize, left)));
  if (!bytes.empty()) {
    m_source.Read(offset, bytes.data(), bytes.size());
  }
  Page& page = m_pages[m_oldestPage];
  m_oldestPage = (m_oldestPage + 1) % m_pages.size();
  page = {number, std::move(bytes)};
  return page.bytes;
}

/// Reads bytes that lie within the file. Small reads go through the page cache, and so do all reads
/// of a file that fits into one page, so that one call reads such a file.
void CompoundFile::ReadAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t count) {
  if (count > kPageSize / 2 && m_source.Size() > kPageSize) {
    m_source.Read(offset, bytes, count);
    return;
  }
  while (count > 0) {
    const Bytes& page = LoadPage(offset / kPageSize);
    const auto begin = static_cast<std::size_t>(offset % kPageSize);
    const std::size_t size = std::min(count, page.size() - begin);
    std::memcpy(bytes, page.data() + begin, size);
    offset += size;
    bytes += size;
    count -= size;
  }
}

/// Reads bytes that may extend past the end of the file, because some writers do not pad the last
/// sector. The missing bytes read as 0xFF, which every table treats as unused.
void CompoundFile::ReadPadded(std::uint64_t offset, std::uint8_t* bytes, std::size_t count) {
  const std::uint64_t available = m_source.Size() > offset ? m_source.Size() - offset : 0;
  const auto present = static_cast<std::size_t>(std::min<std::uint64_t>(available, count));
  if (present > 0) {
    ReadAt(offset, bytes, present);
  }
  std::memset(bytes + present, 0xFF, count - present);
}

/// Reads `size` bytes from sectors of `sectorSize` bytes, whose offsets in the file `offsetOf`
/// returns. Reads adjacent sectors at once.
template <class FindOffset>
Bytes CompoundFile::ReadExtents(const std::vector<std::uint32_t>& sectors, std::size_t sectorSize,
                                std::uint64_t size, FindOffset offsetOf) {
  Bytes bytes(static_cast<std::size_t>(size));
  std::size_t done = 0;
  for (std::size_t first = 0; first < sectors.size();) {
    const std::uint64_t begin = offsetOf(sectors[first]);
    std::size_t end = first + 1;
    while (end < sectors.size() && offsetOf(sectors[end]) == begin + (end - first) * sectorSize) {
      ++end;
    }
    const std::size_t count = std::min((end - first) * sectorSize, bytes.size() - done);
    ReadPadded(begin, bytes.data() + done, count);
    done += count;
    first = end;
  }
  return bytes;
}

/// Reads whole sectors.
Bytes CompoundFile::ReadSectors(const std::vector<std::uint32_t>& sectors) {
  const std::uint64_t size = sectors.size() * SectorSize();
  if (size > kMaxReadSize) {
    ThrowDamage(DamagedPart::Structure, "The directory or the mini stream's allocation table has ",
                size, " bytes, and ", kMaxReadSize, " are read at most.");
  }
  return ReadExtents(sectors, static_cast<std::size_t>(SectorSize()), size,
                     [this](std::uint32_t sector) { return OffsetOf(sector); });
}

/// Returns the sector that holds part `index` of the allocation table. The header lists the first
/// ones. The others are in a chain of lists, each of which ends with the sector of the next.
std::uint32_t CompoundFile::FindTableSector(std::uint32_t index) {
  if (index < m_header.tableList.size()) {
    return m_header.tableList[index];
  }
  const std::size_t further = index - m_header.tableList.size();
  while (further >= m_furtherTableSectors.size()) {
    if (m_nextTableList >= m_sectorCount) {
      ThrowDamage(DamagedPart::Structure, "The list of the allocation table's sectors ends after ",
                  m_header.tableList.size() + m_furtherTableSectors.size(), " of ",
                  m_header.tableSectors, '.');
    }
    Bytes list(static_cast<std::size_t>(SectorSize()));
    ReadPadded(OffsetOf(m_nextTableList), list.data(), list.size());
    for (std::size_t i = 0; i + 1 < NumbersPerSector(); ++i) {
      m_furtherTableSectors.push_back(ReadU32(list.data() + 4 * i));
    }
    m_tableLists.push_back(m_nextTableList);
    m_nextTableList = ReadU32(list.data() + list.size() - 4);
  }
  return m_furtherTableSectors[further];
}

/// Returns the sector that follows `sector` in its chain. `sector` must be one of the file's.
std::uint32_t CompoundFile::NextSector(std::uint32_t sector) {
  const std::uint32_t index = sector / NumbersPerSector();
  if (index >= m_header.tableSectors) {
    ThrowDamage(DamagedPart::Structure, "The allocation table has ",
                std::uint64_t{m_header.tableSectors} * NumbersPerSector(),
                " entries and none for sector ", sector, '.');
  }
  auto part = m_table.find(index);
  if (part == m_table.end()) {
    const std::uint32_t location = FindTableSector(index);
    if (location >= m_sectorCount) {
      ThrowDamage(DamagedPart::Structure, "The allocation table lies in sector ", location, " of ",
                  m_sectorCount, '.');
    }
    Bytes bytes(static_cast<std::size_t>(SectorSize()));
    ReadPadded(OffsetOf(location), bytes.data(), bytes.size());
    part = m_table.emplace(index, std::move(bytes)).first;
  }
  return ReadU32(part->second.data() + 4 * std::size_t{sector % NumbersPerSector()});
}

std::uint32_t CompoundFile::NextMiniSector(std::uint32_t sector) {
  const std::size_t count = m_miniTable.size() / 4;
  if (sector >= count) {
    ThrowDamage(DamagedPart::Structure, "The mini stream's allocation table has ", count,
                " entries and none for sector ", sector, '.');
  }
  return ReadU32(m_miniTable.data() + 4 * std::size_t{sector});
}

/// Sets `sectors` to the sectors of a chain, `most` of them at most. Throws Damage if one is not
/// below `sectorCount` or occurs twice.
template <class Next>
void CompoundFile::FollowChain(std::uint32_t first, std::uint64_t most, std::uint64_t sectorCount,
                               DamagedPart part, const Subject& subject,
                               std::vector<std::uint32_t>& sectors, Next next) {
  sectors.clear();
  sectors.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(most, 16)));
  // An endless chain returns to the sector remembered at the last power of two (Brent's method).
  std::uint32_t remembered = kEndOfChain;
  std::size_t nextToRemember = 1;
  for (std::uint32_t sector = first; most > 0 && sector != kEndOfChain; sector = next(sector)) {
    if (sector >= sectorCount) {
      ThrowDamage(part, subject, " leads to sector ", sector, " of ", sectorCount, '.');
    }
    if (sector == remembered) {
      ThrowDamage(part, subject, " comes back to sector ", sector, '.');
    }
    sectors.push_back(sector);
    if (sectors.size() == most) {
      break;  // what follows the last one does not matter
    }
    if (sectors.size() == nextToRemember) {
      remembered = sector;
      nextToRemember *= 2;
    }
  }
  // A chain of `most` sectors may still contain one twice, unless they ascend, as they mostly do.
  if (std::adjacent_find(sectors.begin(), sectors.end(), std::greater_equal<>()) != sectors.end()) {
    std::vector<std::uint32_t> sorted(sectors);
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice != sorted.end()) {
      ThrowDamage(part, subject, " comes back to sector ", *twice, '.');
    }
  }
}

void CompoundFile::ReadChain(std::uint32_t first, std::uint64_t most, DamagedPart part,
                             const Subject& subject, std::vector<std::uint32_t>& sectors) {
  FollowChain(first, most, m_sectorCount, part, subject, sectors,
              [this](std::uint32_t sector) { return NextSector(sector); });
}

void CompoundFile::ReadMiniChain(std::uint32_t first, std::uint64_t most, DamagedPart part,
                                 const Subject& subject, std::vector<std::uint32_t>& sectors) {
  const std::uint64_t sectorCount = m_miniStream.size() * (SectorSize() / kMiniSectorSize);
  FollowChain(first, most, sectorCount, part, subject, sectors,
              [this](std::uint32_t sector) { return NextMiniSector(sector); });
}

/// Returns the offset in the file of `sector`, which must be one of the mini stream's.
std::uint64_t CompoundFile::MiniOffsetOf(std::uint32_t sector) const noexcept {
  const std::uint64_t perSector = SectorSize() / kMiniSectorSize;
  return OffsetOf(m_miniStream[static_cast<std::size_t>(sector / perSector)]) +
         sector % perSector * kMiniSectorSize;
}

std::optional<CompoundFile::Stream> CompoundFile::FindStream(std::u16string_view name) const {
  const auto found = std::lower_bound(m_streams.begin(), m_streams.end(), name,
                                      [](const NamedStream& stream, std::u16string_view wanted) {
                                        return IsBefore(stream.name, wanted);
                                      });
  return found == m_streams.end() || IsBefore(name, found->name) ? std::nullopt
                                                                 : std::optional(found->stream);
}

Bytes CompoundFile::Read(const Stream& stream, DamagedPart part, const Subject& subject) {
  if (stream.size > m_source.Size()) {
    ThrowDamage(part, subject, " claims ", stream.size, " bytes of a file of ", m_source.Size(),
                '.');
  }
  if (stream.size > kMaxReadSize) {
    ThrowDamage(part, subject, " has ", stream.size, " bytes, and ", kMaxReadSize,
                " are read at most.");
  }
  if (stream.size == 0) {
    return {};
  }
  const bool isMini = stream.size < kMiniStreamLimit;
  if (isMini) {
    LoadMiniStream();
  }
  const std::uint64_t unit = isMini ? kMiniSectorSize : SectorSize();
  const std::uint64_t needed = (stream.size + unit - 1) / unit;
  if (isMini) {
    ReadMiniChain(stream.firstSector, needed, part, subject, m_chain);
  } else {
    ReadChain(stream.firstSector, needed, part, subject, m_chain);
  }
  if (m_chain.size() < needed) {
    ThrowDamage(part, subject, " ends after ", m_chain.size(), " of ", needed,
                isMini ? " mini sectors." : " sectors.");
  }
  const auto offsetOf = [&](std::uint32_t sector) {
    return isMini ? MiniOffsetOf(sector) : OffsetOf(sector);
  };
  std::uint64_t left = stream.size;
  for (const std::uint32_t sector : m_chain) {
    const std::uint64_t count = std::min(unit, left);
    if (offsetOf(sector) + count > m_source.Size()) {
      ThrowDamage(part, subject, " reaches beyond the end of the file.");
    }
    left -= count;
  }
  return ReadExtents(m_chain, static_cast<std::size_t>(unit), stream.size, offsetOf);
}

void CompoundFile::LoadMiniStream() {
  if (m_isMiniStreamLoaded) {
    return;
  }
  if (m_root.size > m_source.Size()) {
    ThrowDamage(DamagedPart::Structure, "The mini stream claims ", m_root.size,
                " bytes of a file of ", m_source.Size(), '.');
  }
  const std::uint64_t needed = (m_root.size + SectorSize() - 1) >> m_header.sectorShift;
  ReadChain(m_root.firstSector, needed, DamagedPart::Structure, "The mini stream", m_miniStream);
  ReadChain(m_header.firstMiniTable, m_sectorCount, DamagedPart::Structure,
            "The mini stream's allocation table", m_chain);
  m_miniTable = ReadSectors(m_chain);
  m_isMiniStreamLoaded = true;
}

void CompoundFile::VerifyStreams() {
  LoadMiniStream();
  std::vector<bool> isTaken(static_cast<std::size_t>(m_sectorCount));
  std::vector<bool> isMiniTaken(m_miniStream.size() *
                                static_cast<std::size_t>(SectorSize() / kMiniSectorSize));
  const auto take = [](std::vector<bool>& taken, const std::vector<std::uint32_t>& sectors,
                       const Subject& subject) {
    for (const std::uint32_t sector : sectors) {
      if (sector >= taken.size() || taken[sector]) {
        ThrowDamage(DamagedPart::Structure, subject, " has sector ", sector,
                    ", which belongs to another part.");
      }
      taken[sector] = true;
    }
  };
  const auto takeChain = [&](std::uint32_t first, const Subject& subject) {
    ReadChain(first, m_sectorCount, DamagedPart::Structure, subject, m_chain);
    take(isTaken, m_chain, subject);
    return m_chain.size();
  };
  for (std::uint32_t index = 0; index < m_header.tableSectors; ++index) {
    take(isTaken, {FindTableSector(index)}, "The allocation table");
  }
  take(isTaken, m_tableLists, "The list of the allocation table's sectors");
  takeChain(m_header.firstDirectory, "The directory");
  takeChain(m_header.firstMiniTable, "The mini stream's allocation table");
  takeChain(m_root.firstSector, "The mini stream");
  for (const auto& [name, stream] : m_streams) {
    const std::string shownName = DecodeStreamName(name);
    const Subject subject("Stream", shownName);
    const bool isMini = stream.size < kMiniStreamLimit;
    if (stream.size == 0) {
      continue;
    }
    std::size_t count = 0;
    if (isMini) {
      ReadMiniChain(stream.firstSector, isMiniTaken.size(), DamagedPart::Structure, subject,
                    m_chain);
      take(isMiniTaken, m_chain, subject);
      count = m_chain.size();
    } else {
      count = takeChain(stream.firstSector, subject);
    }
    const std::uint64_t unit = isMini ? kMiniSectorSize : SectorSize();
    if (count * unit < stream.size) {
      ThrowDamage(DamagedPart::Structure, subject, " has ", count, " sectors for ", stream.size,
                  " bytes.");
    }
  }
}

std::optional<unsigned> CompoundFile::FindUnknownVersion() const noexcept {
  const bool isKnown = m_header.majorVersion == 3 || m_header.majorVersion == 4;
  return isKnown ? std::nullopt : std::optional(m_header.majorVersion);
}

std::vector<Defect> CompoundFile::Defects() const {
  std::vector<Defect> defects;
  if (m_source.Size() % SectorSize() != 0) {
    defects.push_back({Defect::Grade::Harmless,
                       Concatenate("The last sector has ", m_source.Size() % SectorSize(), " of ",
                                   SectorSize(), " bytes.")});
  }
  // This does not prove damage: the system may order non-ASCII names by case tables of its own.
  if (!m_isInOrder) {
    defects.push_back({Defect::Grade::Suspicious, "The tree of the directory is not in order."});
  }
  if (!m_hasSizesOfNames) {
    defects.push_back(
        {Defect::Grade::Suspicious, "A name in the directory ends before or after its size."});
  }
  for (const auto& [name, stream] : m_streams) {
    const bool isMini = stream.size < kMiniStreamLimit;
    if (stream.size > m_source.Size() || (!isMini && stream.firstSector >= m_sectorCount)) {
      defects.push_back({Defect::Grade::Suspicious,
                         Concatenate("Stream ", Quote(DecodeStreamName(name)), ", of ", stream.size,
                                     " bytes, lies beyond the end of the file.")});
    }
  }
  return defects;
}

}  // namespace qm::image
