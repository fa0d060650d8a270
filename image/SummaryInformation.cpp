#include "image/SummaryInformation.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qm::image {

namespace {

constexpr std::size_t kHeaderSize = 28;    // with the number of sections
constexpr std::size_t kSectionEntry = 20;  // a format identifier and an offset
constexpr std::size_t kPropertyEntry = 8;  // a number and an offset
constexpr std::size_t kTextHeader = 8;     // the type and the size of a text

constexpr std::uint32_t kCodePageProperty = 1;
constexpr std::uint32_t kNull = 0;
constexpr std::uint32_t kSmallInteger = 2;
constexpr std::uint32_t kInteger = 3;
constexpr std::uint32_t kText = 30;
constexpr std::uint32_t kTime = 64;

/// F29F85E0-4FF9-1068-AB91-08002B27B3D9 as it is stored.
constexpr std::uint8_t kSummaryFormat[] = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                           0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};

}  // namespace

SummaryInformation::SummaryInformation(Bytes stream) : m_stream(std::move(stream)) {
  if (m_stream.size() < kHeaderSize + kSectionEntry) {
    ThrowDamage(DamagedPart::Summary, "The summary information has only ", m_stream.size(),
                " bytes.");
  }
  const std::uint8_t* const bytes = m_stream.data();
  if (ReadU16(bytes) != 0xFFFE || ReadU32(bytes + 24) == 0 ||
      std::memcmp(bytes + kHeaderSize, kSummaryFormat, sizeof kSummaryFormat) != 0) {
    ThrowDamage(DamagedPart::Summary, "The summary information does not begin with its header.");
  }
  const std::uint32_t section = ReadU32(bytes + kHeaderSize + sizeof kSummaryFormat);
  if (section > m_stream.size() || m_stream.size() - section < kPropertyEntry) {
    ThrowDamage(DamagedPart::Summary, "The properties of the summary information begin at byte ",
                section, " of ", m_stream.size(), '.');
  }
  const std::uint32_t size =
      std::min(ReadU32(bytes + section), static_cast<std::uint32_t>(m_stream.size() - section));
  const std::uint32_t count = ReadU32(bytes + section + 4);
  if (size < kPropertyEntry || count > (size - kPropertyEntry) / kPropertyEntry) {
    ThrowDamage(DamagedPart::Summary, "The summary information claims ", count, " properties in ",
                size, " bytes.");
  }
  m_properties.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint8_t* const entry = bytes + section + kPropertyEntry * (std::size_t{i} + 1);
    const std::uint32_t number = ReadU32(entry);
    const std::uint32_t offset = ReadU32(entry + 4);
    if (offset > size || size - offset < kTextHeader) {
      ThrowDamage(DamagedPart::Summary, "Property ", number,
                  " of the summary information begins at byte ", offset, " of ", size, '.');
    }
    const std::uint8_t* const value = bytes + section + offset;
    const std::uint32_t type = ReadU32(value);
    m_properties.push_back(
        {number, type, ReadU32(value + 4), section + std::size_t{offset} + kTextHeader});
    if (number == kCodePageProperty && type == kSmallInteger) {
      m_codePage = ReadU16(value + 4);
    } else if (type == kText) {
      const std::uint32_t length = ReadU32(value + 4);
      if (length > size - offset - kTextHeader) {
        ThrowDamage(DamagedPart::Summary, "Property ", number,
                    " of the summary information claims ", length, " bytes of ", size, '.');
      }
    } else if (type != kNull && type != kSmallInteger && type != kInteger && type != kTime) {
      m_unknown = number;
    }
  }
}

std::optional<std::string_view> SummaryInformation::Text(std::uint32_t property) const {
  const Property* const found = Find(property, kText);
  if (!found) {
    return std::nullopt;
  }
  const std::string_view text(reinterpret_cast<const char*>(m_stream.data()) + found->text,
                              found->value);
  return text.substr(0, text.find('\0'));
}

std::optional<std::int32_t> SummaryInformation::Integer(std::uint32_t property) const {
  const Property* const found = Find(property, kInteger);
  return found ? std::optional(static_cast<std::int32_t>(found->value)) : std::nullopt;
}

const SummaryInformation::Property* SummaryInformation::Find(std::uint32_t number,
                                                             std::uint32_t type) const noexcept {
  const auto found =
      std::find_if(m_properties.rbegin(), m_properties.rend(),
                   [&](const Property& property) { return property.number == number; });
  return found == m_properties.rend() || found->type != type ? nullptr : &*found;
}

}  // namespace qm::image
