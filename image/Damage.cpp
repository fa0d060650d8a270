#include "image/Damage.h"

namespace qm::image {

std::string Quote(std::string_view bytes) {
  constexpr std::size_t kMost = 80;
  std::string text = "\"";
  for (const char character : bytes.substr(0, kMost)) {
    text += character >= ' ' && character <= '~' ? character : '?';
  }
  return text + (bytes.size() > kMost ? "...\"" : "\"");
}

}  // namespace qm::image
