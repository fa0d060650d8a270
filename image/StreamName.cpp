#include "image/StreamName.h"

namespace qm::image {

namespace {

constexpr char16_t kTableMark = 0x4840;
constexpr char16_t kFirstPair = 0x3800;
constexpr char16_t kFirstSingle = 0x4800;

/// The number of a character that can share one with another, or -1.
int CodeOf(char16_t character) noexcept {
  if (character >= u'0' && character <= u'9') {
    return character - u'0';
  }
  if (character >= u'A' && character <= u'Z') {
    return character - u'A' + 10;
  }
  if (character >= u'a' && character <= u'z') {
    return character - u'a' + 36;
  }
  return character == u'.' ? 62 : character == u'_' ? 63 : -1;
}

}  // namespace

std::u16string EncodeStreamName(std::u16string_view name, StreamKind kind) {
  std::u16string encoded;
  if (kind == StreamKind::Table) {
    encoded += kTableMark;
  }
  for (std::size_t i = 0; i < name.size(); ++i) {
    const int first = CodeOf(name[i]);
    const int second = i + 1 < name.size() ? CodeOf(name[i + 1]) : -1;
    if (first < 0) {
      encoded += name[i];
    } else if (second < 0) {
      encoded += static_cast<char16_t>(kFirstSingle + first);
    } else {
      encoded += static_cast<char16_t>(kFirstPair + first + second * 64);
      ++i;
    }
  }
  return encoded;
}

std::u16string EncodeStreamName(std::string_view name, StreamKind kind) {
  return EncodeStreamName(std::u16string(name.begin(), name.end()), kind);
}

}  // namespace qm::image
