#include "tests/hostile/Damage.h"

#include <algorithm>
#include <iterator>

#include "image/ByteSource.h"
#include "image/StreamName.h"

namespace qm::tests {

namespace {

constexpr std::size_t kEntrySize = 128;
constexpr char16_t kTableMark = 0x4840;  // begins the names of table streams

/// A module while it is being damaged. What came before may have cut or moved the bytes that `map`
/// names: reading and writing beyond the end does nothing.
struct Work {
  Bytes bytes;
  const Base& base;
  const std::vector<Base>& bases;
  Random& random;

  std::uint32_t Get(std::size_t place, unsigned width) const {
    if (place >= bytes.size() || bytes.size() - place < width) {
      return 0;
    }
    return width == 4   ? image::ReadU32(&bytes[place])
           : width == 2 ? image::ReadU16(&bytes[place])
                        : bytes[place];
  }

  void Put(std::size_t place, unsigned width, std::uint32_t value) {
    for (unsigned i = 0; i < width && place + i < bytes.size(); ++i) {
      bytes[place + i] = static_cast<std::uint8_t>(value >> 8 * i);
    }
  }

  /// A number that is likely to mislead whoever finds it in place of `value`.
  std::uint32_t Odd(std::uint32_t value) {
    constexpr std::uint32_t kOdd[] = {0,          1,          2,          3,          0x7F,
                                      0x80,       0xFF,       0x100,      0xFFF,      0x1000,
                                      0x7FFF,     0x8000,     0xFFFF,     0x10000,    0x7FFFFFFF,
                                      0x80000000, 0xFFFFFFF9, 0xFFFFFFFA, 0xFFFFFFFB, 0xFFFFFFFC,
                                      0xFFFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};
    const auto sectors = static_cast<std::uint32_t>(bytes.size() / base.map.sectorSize);
    switch (random.Below(8)) {
      case 0:
        return value + 1;
      case 1:
        return value - 1;
      case 2:
        return value ^ 1U << random.Below(32);
      case 3:
        return static_cast<std::uint32_t>(random.Next());
      case 4:
        return static_cast<std::uint32_t>(random.Below(sectors + 2));
      case 5:
        return value * 2;
      default:
        return kOdd[random.Below(std::size(kOdd))];
    }
  }

  /// Makes the number at `place` an odd one.
  void Spoil(std::size_t place, unsigned width) { Put(place, width, Odd(Get(place, width))); }

  /// Spoils up to `most` numbers of a region.
  void Spoil(const Region& region, unsigned width, std::size_t most) {
    if (region.Size() >= width) {
      for (std::size_t count = 1 + random.Below(most); count > 0; --count) {
        Spoil(region.At(random.Below(region.Size() / width) * width), width);
      }
    }
  }

  std::size_t AnyPlace() { return random.Below(bytes.size()); }
  std::size_t SectorCount() const { return bytes.size() / base.map.sectorSize; }
  std::size_t AnySector() { return random.Below(SectorCount()) * base.map.sectorSize; }

  std::size_t AnyEntry() {
    return base.map.directory.At(random.Below(base.map.directory.Size() / kEntrySize) * kEntrySize);
  }

  /// A stream that `isWanted`; null if there is no such stream.
  template <class IsWanted>
  const Region* AnyStream(IsWanted isWanted) {
    std::vector<const Region*> found;
    for (const ModuleMap::Stream& stream : base.map.streams) {
      if (isWanted(stream.name) && stream.region.Size() > 0) {
        found.push_back(&stream.region);
      }
    }
    return found.empty() ? nullptr : found[random.Below(found.size())];
  }

  const Region* TableStream(const char* name) {
    return AnyStream([encoded = image::EncodeStreamName(name, image::StreamKind::Table)](
                         const std::u16string& stream) { return stream == encoded; });
  }
};

void FlipBits(Work& work) {
  for (std::size_t count = std::size_t{1} << work.random.Below(8); count > 0; --count) {
    const std::size_t place = work.AnyPlace();
    work.Put(place, 1, work.Get(place, 1) ^ 1U << work.random.Below(8));
  }
}

void Cut(Work& work) { work.bytes.resize(work.AnyPlace()); }

void CutAtSector(Work& work) { work.bytes.resize(work.AnySector()); }

void ZeroSectors(Work& work) {
  for (std::size_t count = 1 + work.random.Below(4); count > 0 && work.SectorCount() > 0; --count) {
    const auto sector = work.bytes.begin() + static_cast<std::ptrdiff_t>(work.AnySector());
    std::fill_n(sector, work.base.map.sectorSize, work.random.Once(4) ? 0xFF : 0);
  }
}

void SwapSectors(Work& work) {
  if (work.SectorCount() > 0) {
    const auto a = work.bytes.begin() + static_cast<std::ptrdiff_t>(work.AnySector());
    const auto b = work.bytes.begin() + static_cast<std::ptrdiff_t>(work.AnySector());
    if (a != b) {
      std::swap_ranges(a, a + static_cast<std::ptrdiff_t>(work.base.map.sectorSize), b);
    }
  }
}

/// Puts bytes over others, or between them.
void PutIn(Work& work, std::size_t place, const Bytes& bytes) {
  const auto at = work.bytes.begin() + static_cast<std::ptrdiff_t>(place);
  if (work.random.Once(3)) {
    work.bytes.insert(at, bytes.begin(), bytes.end());
  } else {
    std::copy_n(bytes.begin(), std::min(bytes.size(), work.bytes.size() - place), at);
  }
}

void DoubleSector(Work& work) {
  if (work.SectorCount() > 0) {
    const auto sector = work.bytes.begin() + static_cast<std::ptrdiff_t>(work.AnySector());
    const Bytes copy(sector, sector + static_cast<std::ptrdiff_t>(work.base.map.sectorSize));
    PutIn(work, work.AnySector(), copy);
  }
}

void PutInForeignBytes(Work& work) {
  Bytes bytes(1 + work.random.Below(2048));
  switch (work.random.Below(3)) {
    case 0:
      for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(work.random.Next());
      }
      break;
    case 1:
      for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>("%s%n [TARGETDIR]\\..\\"[i % 20]);
      }
      break;
    default: {
      const Bytes& other = work.bases[work.random.Below(work.bases.size())].bytes;
      const std::size_t begin = work.random.Below(other.size());
      const std::size_t count = std::min(bytes.size(), other.size() - begin);
      std::copy_n(other.begin() + static_cast<std::ptrdiff_t>(begin), count, bytes.begin());
    }
  }
  PutIn(work, work.AnyPlace(), bytes);
}

void Append(Work& work) {
  work.bytes.resize(work.bytes.size() + 1 + work.random.Below(5000),
                    static_cast<std::uint8_t>(work.random.Next()));
}

void SpoilHeader(Work& work) {
  constexpr struct {
    std::uint8_t place, width;
  } fields[] = {{0x00, 4}, {0x18, 2}, {0x1A, 2}, {0x1C, 2}, {0x1E, 2}, {0x20, 2},
                {0x28, 4}, {0x2C, 4}, {0x30, 4}, {0x34, 4}, {0x38, 4}, {0x3C, 4},
                {0x40, 4}, {0x44, 4}, {0x48, 4}, {0x4C, 4}, {0x50, 4}, {0x54, 4}};
  for (std::size_t count = 1 + work.random.Below(2); count > 0; --count) {
    const auto& field = fields[work.random.Below(std::size(fields))];
    work.Spoil(field.place, field.width);
  }
}

void SpoilAllocationTable(Work& work) { work.Spoil(work.base.map.allocationTable, 4, 6); }

void SpoilMiniTable(Work& work) { work.Spoil(work.base.map.miniTable, 4, 6); }

/// Name, type, neighbours, and where the data lies.
void SpoilDirectory(Work& work) {
  constexpr struct {
    std::uint8_t place, width;
  } fields[] = {{0x00, 2}, {0x02, 2}, {0x40, 2}, {0x42, 1}, {0x43, 1}, {0x44, 4},
                {0x48, 4}, {0x4C, 4}, {0x74, 4}, {0x78, 4}, {0x7C, 4}};
  for (std::size_t count = 1 + work.random.Below(3); count > 0; --count) {
    const auto& field = fields[work.random.Below(std::size(fields))];
    work.Spoil(work.AnyEntry() + field.place, field.width);
  }
}

/// Gives one stream the data of another, or its name.
void MixUpStreams(Work& work) {
  const std::size_t from = work.AnyEntry();
  const std::size_t to = work.AnyEntry();
  const bool isName = work.random.Once(2);
  const std::size_t begin = isName ? 0 : 0x74;
  const std::size_t end = isName ? 0x42 : 0x7C;
  for (std::size_t i = begin; i < end; ++i) {
    work.Put(to + i, 1, work.Get(from + i, 1));
  }
}

void SpoilStringPool(Work& work) {
  if (const Region* const pool = work.TableStream("_StringPool")) {
    work.Spoil(*pool, work.random.Once(2) ? 4 : 2, 4);
  }
}

void SpoilStrings(Work& work) {
  if (const Region* const data = work.TableStream("_StringData")) {
    work.Spoil(*data, 1, 40);
  }
}

void ChangeCodePage(Work& work) {
  constexpr std::uint32_t kCodePages[] = {0,    437,   850,   932,   936,   1200,  1201,  1252,
                                          1361, 20127, 28591, 50220, 52936, 54936, 65000, 65001};
  if (const Region* const pool = work.TableStream("_StringPool")) {
    const std::uint32_t longReferences = work.Get(pool->At(0), 4) & 0x80000000;
    work.Put(pool->At(0), 4, kCodePages[work.random.Below(std::size(kCodePages))] | longReferences);
  }
}

/// Changes something that the installer is asked about in the end.
void MakeUnknown(Work& work) {
  const Region* const pool = work.TableStream("_StringPool");
  if (pool && work.random.Once(2)) {
    work.Put(pool->At(0), 4, 9999);
  } else {
    work.Put(0x1A, 2, 5);
  }
}

void SpoilDefinitions(Work& work) {
  if (const Region* const table = work.TableStream(work.random.Once(3) ? "_Tables" : "_Columns")) {
    work.Spoil(*table, 2, 4);
  }
}

void SpoilRows(Work& work) {
  if (const Region* const table = work.AnyStream(
          [](const std::u16string& name) { return !name.empty() && name[0] == kTableMark; })) {
    work.Spoil(*table, 2, 8);
  }
}

void SpoilSummary(Work& work) {
  if (const Region* const summary = work.AnyStream(
          [](const std::u16string& name) { return name == u"\005SummaryInformation"; })) {
    work.Spoil(*summary, work.random.Once(2) ? 4 : 1, 4);
  }
}

constexpr struct {
  const char* name;
  void (*damage)(Work&);
} kWays[] = {{"flipped bits", FlipBits},
             {"cut", Cut},
             {"cut at a sector", CutAtSector},
             {"zeroed sectors", ZeroSectors},
             {"swapped sectors", SwapSectors},
             {"doubled sector", DoubleSector},
             {"foreign bytes", PutInForeignBytes},
             {"appended bytes", Append},
             {"header", SpoilHeader},
             {"allocation table", SpoilAllocationTable},
             {"mini allocation table", SpoilMiniTable},
             {"directory", SpoilDirectory},
             {"mixed-up streams", MixUpStreams},
             {"string pool", SpoilStringPool},
             {"strings", SpoilStrings},
             {"code page", ChangeCodePage},
             {"definitions of tables", SpoilDefinitions},
             {"rows", SpoilRows},
             {"summary", SpoilSummary},
             {"unknown kind", MakeUnknown}};

/// Large modules take their time: they are few.
const Base& AnyBase(const std::vector<Base>& bases, Random& random) {
  constexpr std::size_t kLarge = 300000;
  for (;;) {
    const Base& base = bases[random.Below(bases.size())];
    if (base.bytes.size() < kLarge || random.Once(30)) {
      return base;
    }
  }
}

}  // namespace

std::uint64_t Random::Next() {
  // The generator "SplitMix64".
  std::uint64_t number = m_state += 0x9E3779B97F4A7C15;
  number = (number ^ number >> 30U) * 0xBF58476D1CE4E5B9;
  number = (number ^ number >> 27U) * 0x94D049BB133111EB;
  return number ^ number >> 31U;
}

Damaged Damage(const std::vector<Base>& bases, Random& random) {
  const Base& base = AnyBase(bases, random);
  Work work{base.bytes, base, bases, random};
  std::string how;
  const auto apply = [&](const auto& way) {
    way.damage(work);
    how += (how.empty() ? base.name + ": " : ", ") + way.name;
  };
  do {
    apply(kWays[random.Below(std::size(kWays))]);
  } while (random.Once(3));
  // Where the installer is asked, no damage must be left that it does not survive.
  if (random.Once(10)) {
    apply(kWays[std::size(kWays) - 1]);
  }
  return {std::move(work.bytes), std::move(how)};
}

}  // namespace qm::tests
