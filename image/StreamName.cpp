#include "image/StreamName.h"

#include <array>

namespace qm::image {

namespace {

constexpr char16_t kTableMark = 0x4840;
constexpr char16_t kFirstPair = 0x3800;
constexpr char16_t kFirstSingle = 0x4800;

/// The characters that are packed, by their code.
constexpr std::string_view kCharacters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._";
static_assert(kCharacters.size() == 64);

/// The codes of the ASCII characters; -1 for those that are not packed.
constexpr auto kCodes = [] {
  std::array<signed char, 0x80> codes{};
  for (signed char& code : codes) {
    code = -1;
  }
  for (std::size_t code = 0; code < kCharacters.size(); ++code) {
    codes[static_cast<unsigned char>(kCharacters[code])] = static_cast<signed char>(code);
  }
  return codes;
}();

/// Returns the code of a character, or -1 if it is not packed.
int EncodeCharacter(char16_t character) noexcept {
  return character < kCodes.size() ? kCodes[character] : -1;
}

/// Encodes a name of UTF-16 or ASCII.
template <class Name>
std::u16string Encode(Name name, StreamKind kind) {
  const auto at = [&](std::size_t i) { return static_cast<char16_t>(name[i]); };
  std::u16string encoded;
  encoded.reserve(name.size() / 2 + 2);
  if (kind == StreamKind::Table) {
    encoded += kTableMark;
  }
  for (std::size_t i = 0; i < name.size(); ++i) {
    const int first = EncodeCharacter(at(i));
    const int second = i + 1 < name.size() ? EncodeCharacter(at(i + 1)) : -1;
    if (first < 0) {
      encoded += at(i);
    } else if (second < 0) {
      encoded += static_cast<char16_t>(kFirstSingle + first);
    } else {
      encoded += static_cast<char16_t>(kFirstPair + first + second * 64);
      ++i;
    }
  }
  return encoded;
}

}  // namespace

std::u16string EncodeStreamName(std::u16string_view name, StreamKind kind) {
  return Encode(name, kind);
}

std::u16string EncodeStreamName(std::string_view name, StreamKind kind) {
  return Encode(name, kind);
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
