#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "image/ByteSource.h"
#include "image/Damage.h"

namespace qm::image {

/// The summary information of a database: a set of numbered properties.
class SummaryInformation {
 public:
  /// `stream` holds the property set. Throws Damage (Summary) and std::bad_alloc.
  explicit SummaryInformation(Bytes stream);

  /// The code page of all texts; 0 means the system's own.
  std::uint32_t CodePage() const noexcept { return m_codePage; }

  /// Returns the bytes of a text property up to the first zero; nothing if the property is missing
  /// or is not text. Valid as long as the object.
  std::optional<std::string_view> Text(std::uint32_t property) const;

  /// Returns the value of an integer property; nothing if the property is missing or is no integer.
  std::optional<std::int32_t> Integer(std::uint32_t property) const;

  /// Returns the number of a property whose type installers do not write. They write nulls,
  /// integers, texts and times. Nothing if there is no such property.
  std::optional<std::uint32_t> FindPropertyOfUnknownType() const noexcept { return m_unknown; }

 private:
  struct Property {
    std::uint32_t number;
    std::uint32_t type;
    /// An integer, or the size of a text including what follows its first zero.
    std::uint32_t value;
    std::size_t text;  ///< its offset in m_stream
  };

  /// Returns the last property with a number if it is of this type, else null.
  const Property* Find(std::uint32_t number, std::uint32_t type) const noexcept;

  Bytes m_stream;
  std::uint32_t m_codePage = 0;
  std::optional<std::uint32_t> m_unknown;
  std::vector<Property> m_properties;  ///< in the order of the file
};

}  // namespace qm::image
