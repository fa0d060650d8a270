#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "image/ByteSource.h"
#include "image/Damage.h"

namespace qm::image {

/// The strings of a database, as bytes in one code page. Tables refer to them by number; 0 is null.
/// Immutable.
class StringPool {
 public:
  /// `pool` has the length and the reference count of each string, `data` the strings one after
  /// another. Throws Damage (Structure) and std::bad_alloc.
  StringPool(const Bytes& pool, Bytes data);

  /// The code page of all strings; 0 means the system's own.
  std::uint32_t CodePage() const noexcept { return m_codePage; }

  /// The size of a string number in a table, in bytes: 2 or 3.
  unsigned ReferenceSize() const noexcept { return m_referenceSize; }

  /// One more than the greatest string number.
  std::uint32_t EndNumber() const noexcept { return static_cast<std::uint32_t>(m_ends.size()); }

  /// Returns the string of this number, which must be below EndNumber(); empty for null and unused
  /// numbers. Valid as long as the pool.
  std::string_view Text(std::uint32_t number) const noexcept;

  /// Returns the number of a string from the view that Text() returned for it; 0 for empty text.
  std::uint32_t FindNumber(std::string_view text) const noexcept;

  /// All strings, one after another.
  std::string_view Data() const noexcept {
    return {reinterpret_cast<const char*>(m_data.data()), m_data.size()};
  }

  /// The end of each string in Data(), by its number.
  const std::vector<std::uint32_t>& Ends() const noexcept { return m_ends; }

  /// Returns Data() and Ends() without a copy: views into the data stay valid. The object must not
  /// be used afterwards.
  std::pair<Bytes, std::vector<std::uint32_t>> Take() && noexcept {
    return {std::move(m_data), std::move(m_ends)};
  }

  /// The number of bytes in the data that belong to no string.
  std::size_t UnusedBytes() const noexcept { return m_data.size() - m_ends.back(); }

 private:
  std::uint32_t m_codePage = 0;
  unsigned m_referenceSize = 2;
  Bytes m_data;
  std::vector<std::uint32_t> m_ends;  ///< the end of each string in the data, from string 0 on
};

}  // namespace qm::image
