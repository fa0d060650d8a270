#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm::image {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of a file, read by position.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  /// Returns the size in bytes, which does not change while the object lives.
  virtual std::uint64_t Size() const noexcept = 0;

  /// Copies `count` bytes at `offset` to `bytes`. The range lies within Size(). If the read fails
  /// or is short, throws an exception of the implementation's own, which passes through the
  /// readers.
  virtual void Read(std::uint64_t offset, void* bytes, std::size_t count) = 0;
};

// Numbers are stored in little-endian order.

inline std::uint16_t ReadU16(const std::uint8_t* bytes) noexcept {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8U);
}

inline std::uint32_t ReadU32(const std::uint8_t* bytes) noexcept {
  return ReadU16(bytes) | static_cast<std::uint32_t>(ReadU16(bytes + 2)) << 16U;
}

inline std::uint64_t ReadU64(const std::uint8_t* bytes) noexcept {
  return ReadU32(bytes) | static_cast<std::uint64_t>(ReadU32(bytes + 4)) << 32U;
}

}  // namespace qm::image
