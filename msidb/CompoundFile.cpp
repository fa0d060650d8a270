#include "msidb/CompoundFile.h"

#include <windows.h>

#include <array>
#include <cstring>

#include "common/UniqueFile.h"

namespace msidb {

namespace {

constexpr DWORD kFree = 0xFFFFFFFF;
constexpr DWORD kLastSector = 0xFFFFFFFA;  // greater numbers have meanings of their own

/// The beginning of a compound file. Numbers are little-endian, as on every machine that this runs
/// on.
struct Header {
  BYTE signature[8];
  BYTE unused1[22];
  WORD sectorShift;
  BYTE unused2[12];
  DWORD tableSectors;
  BYTE unused3[20];
  DWORD firstListSector;
  DWORD listSectors;
  DWORD tableSector[109];  ///< the first sectors of the allocation table; the list has the others
};
static_assert(sizeof(Header) == 512);

/// A compound file, of which only the allocation table is read.
class CompoundFile {
 public:
  explicit CompoundFile(const CWideString& path) noexcept
      : m_file(::CreateFileW(path.c_str(), GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, 0, nullptr)) {}

  /// Reads the header; false when there is none.
  bool Open() noexcept {
    constexpr BYTE signature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    LARGE_INTEGER size;
    if (!m_file || !::GetFileSizeEx(m_file.Get(), &size)) {
      return false;
    }
    m_size = static_cast<ULONGLONG>(size.QuadPart);
    return Read(0, &m_header, sizeof m_header) &&
           std::memcmp(m_header.signature, signature, sizeof signature) == 0 &&
           (m_header.sectorShift == 9 || m_header.sectorShift == 12);
  }

  /// Whether every sector of the table is there, and every one that the table says is in use.
  bool IsWhole() noexcept {
    if (m_header.tableSectors > m_size >> m_header.sectorShift) {
      return false;  // no list of them, whatever it may be, needs to be followed
    }
    DWORD listSector = m_header.firstListSector;
    DWORD fromHeader = 0;
    DWORD fromList = PerSector() - 1;  // the last number of a list sector is that of the next
    for (DWORD index = 0; index < m_header.tableSectors; ++index) {
      DWORD tableSector = kFree;
      if (fromHeader < std::size(m_header.tableSector)) {
        tableSector = m_header.tableSector[fromHeader++];
      } else {
        if (fromList == PerSector() - 1) {
          if (!ReadSector(listSector, m_list)) {
            return false;
          }
          listSector = m_list[PerSector() - 1];
          fromList = 0;
        }
        tableSector = m_list[fromList++];
      }
      if (!ReadSector(tableSector, m_table) || !AreThere(index * PerSector())) {
        return false;
      }
    }
    return true;
  }

 private:
  using Sector = std::array<DWORD, 4096 / sizeof(DWORD)>;

  DWORD PerSector() const noexcept { return (1U << m_header.sectorShift) / sizeof(DWORD); }

  /// Whether a sector lies within the file as a whole.
  bool IsThere(DWORD sector) const noexcept {
    return sector <= kLastSector && ((ULONGLONG{sector} + 2) << m_header.sectorShift) <= m_size;
  }

  /// Whether all sectors from `first` on that the table has in use are there.
  bool AreThere(DWORD first) const noexcept {
    for (DWORD i = 0; i < PerSector(); ++i) {
      if (m_table[i] != kFree && !IsThere(first + i)) {
        return false;
      }
    }
    return true;
  }

  bool ReadSector(DWORD sector, Sector& numbers) noexcept {
    return IsThere(sector) && Read((ULONGLONG{sector} + 1) << m_header.sectorShift, numbers.data(),
                                   1U << m_header.sectorShift);
  }

  bool Read(ULONGLONG offset, void* bytes, DWORD count) noexcept {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
    DWORD read = 0;
    return ::ReadFile(m_file.Get(), bytes, count, &read, &place) && read == count;
  }

  CUniqueFile m_file;
  ULONGLONG m_size = 0;
  Header m_header{};
  Sector m_list{};
  Sector m_table{};
};

}  // namespace

bool IsCutShort(const CWideString& path) noexcept {
  CompoundFile file(path);
  return file.Open() && !file.IsWhole();
}

}  // namespace msidb
