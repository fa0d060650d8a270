#include "text/Ascii.h"

#include <algorithm>

namespace qm::text {

bool IsAscii(std::string_view bytes) noexcept {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
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
