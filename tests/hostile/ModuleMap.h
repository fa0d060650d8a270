#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qm::tests {

using Bytes = std::vector<std::uint8_t>;

/// Bytes of a compound file that belong together but may lie apart.
class Region {
 public:
  Region() = default;

  /// `size` bytes in units of one size, which begin at these places in the file.
  Region(std::vector<std::size_t> units, std::size_t unit, std::size_t size)
      : m_units(std::move(units)), m_unit(unit), m_size(size) {}

  std::size_t Size() const noexcept { return m_size; }

  /// The place of a byte in the file.
  std::size_t At(std::size_t offset) const { return m_units.at(offset / m_unit) + offset % m_unit; }

 private:
  std::vector<std::size_t> m_units;
  std::size_t m_unit = 1;
  std::size_t m_size = 0;
};

/// Where the parts of a module lie in its file, which must be sound: nothing is checked.
struct ModuleMap {
  struct Stream {
    std::u16string name;  ///< as the directory has it
    Region region;
  };

  explicit ModuleMap(const Bytes& file);

  std::size_t sectorSize;
  Region allocationTable;
  Region directory;
  Region miniTable;
  std::vector<Stream> streams;
};

}  // namespace qm::tests
