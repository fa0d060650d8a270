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

/// A compound file: a header, sectors of 512 or 4,096 bytes, an allocation table that chains them,
/// and a directory of named streams. Streams below 4,096 bytes lie in sectors of 64 bytes inside
/// the mini stream.
///
/// No number of the file is used before it was compared with what the file has. A chain that comes
/// back to one of its sectors is refused, and nothing larger than the file is allocated. Only the
/// header, the directory and what is asked for are read, with the parts of the allocation table
/// that lead there. A call takes time in proportion to what it reads, times a logarithm.
///
/// Every function throws Damage (NoDatabase, Structure, or the part that it is given), what the
/// source throws, and std::bad_alloc.
class CompoundFile {
 public:
  /// A stream of the root storage.
  struct Stream {
    std::uint32_t firstSector;
    std::uint64_t size;  ///< in bytes
  };

  /// Reads header and directory. `source` must outlive the object.
  explicit CompoundFile(ByteSource& source);
  CompoundFile(const CompoundFile&) = delete;
  CompoundFile& operator=(const CompoundFile&) = delete;
  ~CompoundFile() = default;

  /// The size of the file in bytes.
  std::uint64_t Size() const noexcept { return m_source.Size(); }

  /// The stream of this name, as it stands in the directory; the case of ASCII letters makes no
  /// difference. Nothing if there is no such stream.
  std::optional<Stream> FindStream(std::u16string_view name) const;

  /// All bytes of a stream. A failure is one of `part`; its sentence begins with `subject`.
  Bytes Read(const Stream& stream, DamagedPart part, const Subject& subject);

  /// Follows the chains of all streams to their ends. Damage is Structure; a sector that belongs to
  /// two parts is damage as well.
  void VerifyStreams();

  /// The format's version if it is neither 3 nor 4: what else such a file holds is not known.
  std::optional<unsigned> UnknownVersion() const noexcept;

  /// What is odd about the file as far as it has been read, and about the extent of each stream.
  std::vector<Defect> Defects() const;

 private:
  struct Header {
    unsigned majorVersion;
    unsigned sectorShift;
    std::uint32_t tableSectors;    ///< of the allocation table
    std::uint32_t firstDirectory;  ///< sector of the directory
    std::uint32_t firstMiniTable;  ///< sector of the mini stream's allocation table
    std::uint32_t firstTableList;  ///< sector of the list of further sectors of the table
    std::array<std::uint32_t, 109> tableList;  ///< the first sectors of the table
  };
  class Entry;

  struct NamedStream {
    std::u16string_view name;  ///< in m_names
    Stream stream;
  };

  /// A piece of the file. What a database needs is mostly scattered over few of them.
  struct Page {
    std::uint64_t number;
    Bytes bytes;
  };

  static bool IsBefore(std::u16string_view a, std::u16string_view b) noexcept;

  void ReadHeader();
  void ReadDirectory();

  std::uint64_t SectorSize() const noexcept { return std::uint64_t{1} << m_header.sectorShift; }
  std::uint32_t NumbersPerSector() const noexcept {
    return static_cast<std::uint32_t>(SectorSize() / sizeof(std::uint32_t));
  }
  std::uint64_t OffsetOf(std::uint32_t sector) const noexcept {
    return (std::uint64_t{sector} + 1) << m_header.sectorShift;
  }

  const Bytes& PageAt(std::uint64_t number);
  void ReadAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t count);
  void ReadPadded(std::uint64_t offset, std::uint8_t* bytes, std::size_t count);
  Bytes ReadExtents(const std::vector<std::uint64_t>& offsets, std::size_t unit,
                    std::uint64_t size);
  Bytes ReadSectors(const std::vector<std::uint32_t>& sectors, std::uint64_t size);

  std::uint32_t TableSector(std::uint32_t index);
  std::uint32_t NextSector(std::uint32_t sector);
  std::uint32_t NextMiniSector(std::uint32_t sector);
  void LoadMiniStream();

  template <class Next>
  std::vector<std::uint32_t> FollowChain(std::uint32_t first, std::uint64_t most,
                                         std::uint64_t sectorCount, DamagedPart part,
                                         const Subject& subject, Next next);
  std::vector<std::uint32_t> Chain(std::uint32_t first, std::uint64_t most, DamagedPart part,
                                   const Subject& subject);
  std::vector<std::uint32_t> MiniChain(std::uint32_t first, std::uint64_t most, DamagedPart part,
                                       const Subject& subject);
  std::uint64_t MiniOffsetOf(std::uint32_t sector) const noexcept;

  ByteSource& m_source;
  std::vector<Page> m_pages;  ///< the last ones that were read
  std::size_t m_oldestPage = 0;
  Header m_header{};
  std::uint64_t m_sectorCount = 0;  ///< a last sector that is not complete included
  std::vector<std::uint32_t> m_furtherTableSectors;  ///< of those that the header has no room for
  std::uint32_t m_nextTableList = 0;                 ///< the sector that lists the next ones
  std::map<std::uint32_t, Bytes> m_table;            ///< sectors of the allocation table, by index
  std::u16string m_names;              ///< of all entries of the directory, one behind the other
  std::vector<NamedStream> m_streams;  ///< by name; the case of ASCII letters makes no difference
  bool m_hasSizesOfNames = true;       ///< those by which the directory's names end
  bool m_isInOrder = true;  ///< the directory's tree, so that a search in it finds every stream
  Stream m_root{};          ///< the mini stream
  bool m_isMiniStreamLoaded = false;
  Bytes m_miniTable;
  std::vector<std::uint32_t> m_miniStream;  ///< its sectors
};

}  // namespace qm::image
