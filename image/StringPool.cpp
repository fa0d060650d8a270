#include "image/StringPool.h"

#include <algorithm>
#include <utility>

namespace qm::image {

namespace {

constexpr std::size_t kEntrySize = 4;
constexpr std::uint32_t kLongReferences = 0x80000000;

}  // namespace

StringPool::StringPool(const Bytes& pool, Bytes data) : m_data(std::move(data)) {
  const std::size_t entries = pool.size() / kEntrySize;
  m_ends.reserve(std::max<std::size_t>(entries, 1));
  m_ends.push_back(0);
  if (entries == 0) {
    return;  // a database without strings
  }
  // Entry 0 holds what applies to all strings.
  const std::uint32_t common = ReadU32(pool.data());
  m_codePage = common & ~kLongReferences;
  m_referenceSize = (common & kLongReferences) != 0 ? 3 : 2;

  const std::uint64_t size = std::min<std::uint64_t>(m_data.size(), UINT32_MAX);
  std::uint64_t end = 0;
  for (std::size_t i = 1; i < entries; ++i) {
    std::uint32_t length = ReadU16(pool.data() + kEntrySize * i);
    const std::uint32_t references = ReadU16(pool.data() + kEntrySize * i + 2);
    // A string of 64 KB or more has two entries. The first has length 0, and the upper half of the
    // length in place of the reference count.
    if (length == 0 && references != 0) {
      if (++i == entries) {
        ThrowDamage(DamagedPart::Structure, "The string pool ends inside string ", m_ends.size(),
                    '.');
      }
      length = references << 16U | ReadU16(pool.data() + kEntrySize * i);
    }
    end += length;
    if (end > size) {
      ThrowDamage(DamagedPart::Structure, "String ", m_ends.size(), " of the pool ends at byte ",
                  end, " of ", size, '.');
    }
    m_ends.push_back(static_cast<std::uint32_t>(end));
  }
}

std::string_view StringPool::Text(std::uint32_t number) const noexcept {
  if (number == 0) {
    return {};
  }
  const std::uint32_t begin = m_ends[number - 1];
  return {reinterpret_cast<const char*>(m_data.data()) + begin, m_ends[number] - begin};
}

std::uint32_t StringPool::FindNumber(std::string_view text) const noexcept {
  if (text.empty()) {
    return 0;
  }
  const auto begin =
      static_cast<std::uint32_t>(text.data() - reinterpret_cast<const char*>(m_data.data()));
  return static_cast<std::uint32_t>(std::upper_bound(m_ends.begin(), m_ends.end(), begin) -
                                    m_ends.begin());
}

}  // namespace qm::image
