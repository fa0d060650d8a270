#include "tests/hostile/ModuleMap.h"

#include "image/ByteSource.h"

namespace qm::tests {

namespace {

constexpr std::uint32_t kLastSector = 0xFFFFFFFA;  // greater numbers end a chain
constexpr std::size_t kMiniSectorSize = 64;
constexpr std::size_t kMiniStreamLimit = 4096;
constexpr std::size_t kEntrySize = 128;

std::uint32_t NumberAt(const Bytes& file, const Region& region, std::size_t index) {
  return image::ReadU32(file.data() + region.At(4 * index));
}

}  // namespace

ModuleMap::ModuleMap(const Bytes& file)
    : sectorSize(std::size_t{1} << image::ReadU16(file.data() + 0x1E)) {
  const auto offsetOf = [&](std::uint32_t sector) {
    return (std::size_t{sector} + 1) * sectorSize;
  };
  const auto regionOf = [&](const std::vector<std::size_t>& units) {
    return Region(units, sectorSize, units.size() * sectorSize);
  };
  const auto follow = [&](std::uint32_t sector, const Region& table, auto placeOf) {
    std::vector<std::size_t> places;
    for (; sector < kLastSector; sector = NumberAt(file, table, sector)) {
      places.push_back(placeOf(sector));
    }
    return places;
  };

  std::vector<std::size_t> tableSectors;
  const auto addTableSectors = [&](std::size_t list, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t sector = image::ReadU32(file.data() + list + 4 * i);
      if (sector < kLastSector) {
        tableSectors.push_back(offsetOf(sector));
      }
    }
  };
  addTableSectors(0x4C, 109);
  for (std::uint32_t list = image::ReadU32(file.data() + 0x44); list < kLastSector;
       list = image::ReadU32(file.data() + offsetOf(list) + sectorSize - 4)) {
    addTableSectors(offsetOf(list), sectorSize / 4 - 1);
  }
  allocationTable = regionOf(tableSectors);
  directory = regionOf(follow(image::ReadU32(file.data() + 0x30), allocationTable, offsetOf));
  miniTable = regionOf(follow(image::ReadU32(file.data() + 0x3C), allocationTable, offsetOf));

  const Region miniStream =
      regionOf(follow(image::ReadU32(file.data() + directory.At(0x74)), allocationTable, offsetOf));
  const auto miniOffsetOf = [&](std::uint32_t sector) {
    return miniStream.At(sector * kMiniSectorSize);
  };
  for (std::size_t entry = kEntrySize; entry < directory.Size(); entry += kEntrySize) {
    const std::uint8_t* const bytes = file.data() + directory.At(entry);
    if (bytes[0x42] != 2) {
      continue;  // not a stream
    }
    Stream stream;
    for (std::size_t i = 0; i + 2 < image::ReadU16(bytes + 0x40); i += 2) {
      stream.name += static_cast<char16_t>(image::ReadU16(bytes + i));
    }
    const std::uint32_t size = image::ReadU32(bytes + 0x78);
    const std::uint32_t first = image::ReadU32(bytes + 0x74);
    if (size >= kMiniStreamLimit) {
      stream.region = Region(follow(first, allocationTable, offsetOf), sectorSize, size);
    } else if (size > 0) {
      stream.region = Region(follow(first, miniTable, miniOffsetOf), kMiniSectorSize, size);
    }
    streams.push_back(std::move(stream));
  }
}

}  // namespace qm::tests
