#include "image/StreamName.h"

namespace qm::image {

namespace {

constexpr char16_t kTableMark = 0x4840;
constexpr char16_t kFirstPair = 0x3800;
constexpr char16_t kFirstSingle = 0x4800;

/// The characters that are packed, by their code.
constexpr std::string_view kCharacters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._";
static_assert(kCharacters.size() == 64);

/// Returns the code of a character, or -1 if it is not packed.
int EncodeCharacter(char16_t character) noexcept {
  const std::size_t code =
      character < 0x80 ? kCharacters.find(static_cast<char>(character)) : std::string_view::npos;
  return code == std::string_view::npos ? -1 : static_cast<int>(code);
}

}  // namespace

std::u16string EncodeStreamName(std::u16string_view name, StreamKind kind) {
  std::u16string encoded;
  if (kind == StreamKind::Table) {
    encoded += kTableMark;
  }
  for (std::size_t i = 0; i < name.size(); ++i) {
    const int first = EncodeCharacter(name[i]);
    const int second = i + 1 < name.size() ? EncodeCharacter(name[i + 1]) : -1;
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

std::string DecodeStreamName(std::u16string_view encoded) {
  std::string name;
  for (const char16_t character : encoded) {
    if (character >= kFirstPair && character < kFirstSingle) {
      const int pair = character - kFirstPair;
      name += kCharacters[pair % 64];
      name += kCharacters[pair / 64];
    } else if (character >= kFirstSingle && character < kTableMark) {
      name += kCharacters[character - kFirstSingle];
    } else if (character != kTableMark) {
      name += character < 0x80 ? static_cast<char>(character) : '?';
    }
  }
  return name;
}

}  // namespace qm::image
