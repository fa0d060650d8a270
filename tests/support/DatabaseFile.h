#pragma once

#include <cstdint>
#include <exception>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "image/ByteSource.h"

/// Writes databases in memory, independently of the reader, and lets tests damage them.
namespace qm::tests {

struct ReadFailure : std::exception {};

/// A file in memory. Bytes that are not given, up to its size, are zero.
class MemorySource final : public image::ByteSource {
 public:
  explicit MemorySource(image::Bytes bytes) : m_bytes(std::move(bytes)), m_size(m_bytes.size()) {}
  MemorySource(image::Bytes bytes, std::uint64_t size) : m_bytes(std::move(bytes)), m_size(size) {}

  std::uint64_t Size() const noexcept override { return m_size; }

  /// Throws ReadFailure when it is called for the `failingRead`th time, counted from 1.
  void Read(std::uint64_t offset, void* bytes, std::size_t count) override;

  unsigned failingRead = 0;
  unsigned reads = 0;
  std::uint64_t bytesRead = 0;

 private:
  image::Bytes m_bytes;
  std::uint64_t m_size;
};

struct Stream {
  std::u16string name;  ///< as the directory has it
  image::Bytes bytes;
  std::uint64_t hole = 0;  ///< zeros that follow `bytes` and are not stored; for the last stream
};

/// A compound file and where its parts lie.
struct CompoundFileImage {
  image::Bytes bytes;
  std::uint64_t size;  ///< with the hole
  unsigned sectorShift;
  std::vector<Stream> streams;
  std::map<std::u16string, std::uint32_t> firstSectors;  ///< of mini streams: in the mini stream
  std::uint32_t directory, miniTable, miniStream;        ///< sectors

  MemorySource Source() const { return {bytes, size}; }

  std::size_t Sector(std::uint32_t sector) const {
    return (std::size_t{sector} + 1) << sectorShift;
  }
  /// The entry of the allocation table for a sector; the table begins in sector 0.
  std::size_t TableEntry(std::uint32_t sector) const { return Sector(0) + 4 * std::size_t{sector}; }
  /// The entry of a stream in the directory.
  std::size_t Entry(const std::u16string& name) const;
  /// The first byte of a stream below 4,096 bytes.
  std::size_t MiniData(const std::u16string& name) const;
  std::size_t MiniTableEntry(const std::u16string& name) const {
    return Sector(miniTable) + 4 * std::size_t{firstSectors.at(name)};
  }

  /// Replaces a number of `width` bytes.
  void Put(std::size_t offset, unsigned width, std::uint32_t value);
};

/// `sectorShift` is 9 or 12, for version 3 or 4.
CompoundFileImage WriteCompoundFile(std::vector<Stream> streams, unsigned sectorShift = 9);

// Types of columns.
constexpr unsigned kKey = 0x2000;
constexpr unsigned kNullable = 0x1000;
constexpr unsigned kText = 0x0D48;
constexpr unsigned kByte = 0x0501;  // stored like kShort
constexpr unsigned kShort = 0x0502;
constexpr unsigned kLong = 0x0104;
constexpr unsigned kData = 0x0900;

using Cell = std::variant<std::nullptr_t, std::int32_t, std::string>;

struct TableImage {
  std::string name;
  std::vector<std::pair<std::string, unsigned>> columns;  ///< names and types
  std::vector<std::vector<Cell>> rows;  ///< a cell of data is 1 or null; its stream is separate
};

struct DatabaseImage {
  std::vector<TableImage> tables;
  std::vector<Stream> streams;  ///< other ones
  unsigned codePage = 1252;
  unsigned referenceSize = 2;
};

/// The streams that make up a database.
std::vector<Stream> WriteDatabase(const DatabaseImage& database);

/// The stream of a summary with a code page and texts.
Stream WriteSummary(unsigned codePage, const std::map<std::uint32_t, std::string>& texts);

/// The names of the streams of a table and of a row's data, as the directory has them.
std::u16string TableStream(std::string_view table);
std::u16string RowStream(std::u16string_view name);

}  // namespace qm::tests
