#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "image/ByteSource.h"
#include "image/Damage.h"

namespace qm::image {

/// The strings of a database. Tables name them by number; 0 is null. They are bytes in one code
/// page.
class StringPool {
 public:
  StringPool() = default;

  /// `pool` has an entry of length and reference count for each string, `data` the strings one
  /// behind the other. Throws Damage (Structure) and std::bad_alloc.
  StringPool(const Bytes& pool, Bytes data);

  /// The code page of all strings; 0 for the system's own.
  std::uint32_t CodePage() const noexcept { return m_codePage; }

  /// The bytes that a table takes for the number of a string: 2 or 3.
  unsigned ReferenceSize() const noexcept { return m_referenceSize; }

  /// One more than the greatest number of a string.
  std::uint32_t Count() const noexcept { return static_cast<std::uint32_t>(m_ends.size()); }

  /// A string by its number, which must be below Count(); empty for null and for unused numbers.
  /// Valid as long as the pool.
  std::string_view Text(std::uint32_t number) const noexcept;

  /// Bytes of the data that belong to no string.
  std::size_t SpareBytes() const noexcept { return m_data.size() - m_ends.back(); }

 private:
  std::uint32_t m_codePage = 0;
  unsigned m_referenceSize = 2;
  Bytes m_data;
  std::vector<std::uint32_t> m_ends{
      0};  ///< where each string ends in the data; begins with that of 0
};

}  // namespace qm::image
