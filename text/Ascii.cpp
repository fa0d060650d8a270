#include "text/Ascii.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qm::text {

bool IsAscii(std::string_view bytes) noexcept {
  // Eight bytes at once: the texts of every module come through here.
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; bytes.size() - at >= sizeof all; at += sizeof all) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes.data() + at, sizeof eight);
    all |= eight;
  }
  for (; at < bytes.size(); ++at) {
    all |= static_cast<unsigned char>(bytes[at]);
  }
  return (all & 0x8080808080808080U) == 0;
}

bool IsAsciiSuperset(std::uint32_t codePage) noexcept {
  switch (codePage) {
    case 0:
    case 65001:
    case 874:
    case 932:
    case 936:
    case 949:
    case 950:
      return true;
    default:
      return codePage >= 1250 && codePage <= 1258;
  }
}

}  // namespace qm::text
