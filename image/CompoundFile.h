#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "image/ByteSource.h"
#include "image/Damage.h"

namespace qm::image {

/// Reads a compound file: a header, sectors of 512 or 4,096 bytes, an allocation table that chains
/// them, and a directory of named streams. Streams below 4,096 bytes lie in sectors of 64 bytes
/// inside the mini stream.
///
/// Nothing in the file is trusted. Every number is checked against the file before it is used, a
/// chain that returns to one of its sectors is refused, and nothing larger than the file is
/// allocated. Reads only the header, the directory, the requested streams, and the parts of the
/// allocation table that lead there. A call that reads n bytes takes O(n log n) time. Not
/// thread-safe.
///
/// Functions throw Damage (NoDatabase, Structure, or the part passed to them), what the source
/// throws, and std::bad_alloc.
class CompoundFile {
 public:
  /// A stream of the root storage.
  struct Stream {
    std::uint32_t firstSector;
    std::uint64_t size;  ///< in bytes
  };

  /// Reads the header and the directory. `source` must outlive the object.
  explicit CompoundFile(ByteSource& source);
  CompoundFile(const CompoundFile&) = delete;
  CompoundFile& operator=(const CompoundFile&) = delete;
  ~CompoundFile() = default;

  /// The size of the file in bytes.
  std::uint64_t Size() const noexcept { return m_source.Size(); }

  /// Returns the stream of this name, which is encoded as in the directory. Ignores the case of
  /// ASCII letters. Returns nothing if there is no such stream.
  std::optional<Stream> FindStream(std::u16string_view name) const;

  /// Reads all bytes of a stream. Damage of the stream is Damage of `part`, and its sentence begins
  /// with `subject`.
  Bytes Read(const Stream& stream, DamagedPart part, const Subject& subject);

  /// Follows the chains of all streams to their ends. Throws Damage (Structure), also for a sector
  /// that belongs to two parts.
  void VerifyStreams();

  /// Returns the version of the format if it is neither 3 nor 4: the rest of such a file may have
  /// another meaning.
  std::optional<unsigned> FindUnknownVersion() const noexcept;

  /// Returns the defects of what has been read so far, and of the extent of each stream.
  std::vector<Defect> Defects() const;

 private:
  struct Header {
    unsigned majorVersion;
    unsigned sectorShift;
    std::uint32_t tableSectors;    ///< number of sectors of the allocation table
    std::uint32_t firstDirectory;  ///< first sector of the directory
    std::uint32_t firstMiniTable;  ///< first sector of the mini stream's table
    std::uint32_t firstTableList;  ///< first sector of the list of further table sectors
    std::array<std::uint32_t, 109> tableList;  ///< the first sectors of the table
  };
  class Entry;

  struct NamedStream {
    std::u16string_view name;  ///< in m_names
    Stream stream;
  };

  /// A cached piece of the file. Most of what a database needs lies in a few of them.
  struct Page {
    std::uint64_t number = UINT64_MAX;  ///< UINT64_MAX until a page is loaded
    Bytes bytes;
  };

  /// The order of the directory: shorter names first, then ignoring the case of ASCII letters.
  static bool IsBefore(std::u16string_view a, std::u16string_view b) noexcept;

  void ReadHeader();
  void ReadDirectory();
  void SortStreams();

  std::uint64_t SectorSize() const noexcept { return std::uint64_t{1} << m_header.sectorShift; }
  std::uint32_t NumbersPerSector() const noexcept {
    return static_cast<std::uint32_t>(SectorSize() / sizeof(std::uint32_t));
  }
  std::uint64_t OffsetOf(std::uint32_t sector) const noexcept {
    return (std::uint64_t{sector} + 1) << m_header.sectorShift;
  }

  const Bytes& LoadPage(std::uint64_t number);
  void ReadAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t count);
  void ReadPadded(std::uint64_t offset, std::uint8_t* bytes, std::size_t count);
  template <class FindOffset>
  Bytes ReadExtents(const std::vector<std::uint32_t>& sectors, std::size_t sectorSize,
                    std::uint64_t size, FindOffset offsetOf);
  Bytes ReadSectors(const std::vector<std::uint32_t>& sectors);

  std::uint32_t FindTableSector(std::uint32_t index);
  std::uint32_t NextSector(std::uint32_t sector);
  std::uint32_t NextMiniSector(std::uint32_t sector);
  void LoadMiniStream();

  template <class Next>
  void FollowChain(std::uint32_t first, std::uint64_t most, std::uint64_t sectorCount,
                   DamagedPart part, const Subject& subject, std::vector<std::uint32_t>& sectors,
                   Next next);
  void ReadChain(std::uint32_t first, std::uint64_t most, DamagedPart part, const Subject& subject,
                 std::vector<std::uint32_t>& sectors);
  void ReadMiniChain(std::uint32_t first, std::uint64_t most, DamagedPart part,
                     const Subject& subject, std::vector<std::uint32_t>& sectors);
  std::uint64_t MiniOffsetOf(std::uint32_t sector) const noexcept;

  ByteSource& m_source;
  std::array<Page, 6> m_pages;  ///< those loaded last
  std::size_t m_oldestPage = 0;
  Header m_header{};
  std::uint64_t m_sectorCount = 0;                   ///< including an incomplete last sector
  std::vector<std::uint32_t> m_furtherTableSectors;  ///< those that the header does not list
  std::vector<std::uint32_t> m_tableLists;           ///< the sectors that list them, as far as read
  std::uint32_t m_nextTableList = 0;                 ///< the sector with the next part of that list
  std::map<std::uint32_t, Bytes> m_table;            ///< sectors of the allocation table, by index
  std::u16string m_names;                            ///< of all directory entries, concatenated
  std::vector<NamedStream> m_streams;                ///< sorted as IsBefore does
  bool m_hasSizesOfNames = true;  ///< whether every name ends where its entry says
  bool m_isInOrder = true;        ///< whether a search of the directory's tree finds every stream
  Stream m_root{};                ///< the mini stream
  bool m_isMiniStreamLoaded = false;
  Bytes m_miniTable;
  std::vector<std::uint32_t> m_miniStream;  ///< its sectors
  /// The sectors of what was read last. A member because a file of many small streams would
  /// otherwise spend most of its time on allocating lists.
  std::vector<std::uint32_t> m_chain;
};

}  // namespace qm::image
