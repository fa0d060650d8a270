#include "text/Utf.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace qm::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) noexcept { return unit >= 0xDC00 && unit < 0xE000; }

void AppendUtf8(char32_t character, std::string& out) {
  const auto append = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  const auto tail = [&](int shift) { append(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | (character >> 6));
    tail(0);
  } else if (character < 0x10000) {
    append(0xE0 | (character >> 12));
    tail(6);
    tail(0);
  } else {
    append(0xF0 | (character >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

template <class Unit>
void AppendUtf16(char32_t character, std::basic_string<Unit>& out) {
  if (character < 0x10000) {
    out.push_back(static_cast<Unit>(character));
  } else {
    out.push_back(static_cast<Unit>(0xD7C0 + (character >> 10)));
    out.push_back(static_cast<Unit>(0xDC00 | (character & 0x3FF)));
  }
}

/// What follows a lead byte: the number of continuation bytes, and bounds for the first of them
/// that exclude overlong forms, surrogates and code points above U+10FFFF.
struct Lead {
  int followers;
  std::uint8_t least;
  std::uint8_t most;
};

/// `followers` is 0 if `byte` is not a lead byte.
Lead ClassifyLead(std::uint8_t byte) noexcept {
  if (byte < 0xC2 || byte > 0xF4) {
    return {0, 0, 0};
  }
  if (byte < 0xE0) {
    return {1, 0x80, 0xBF};
  }
  const std::uint8_t least = byte == 0xE0 ? 0xA0 : byte == 0xF0 ? 0x90 : 0x80;
  const std::uint8_t most = byte == 0xED ? 0x9F : byte == 0xF4 ? 0x8F : 0xBF;
  return {byte < 0xF0 ? 2 : 3, least, most};
}

/// Returns the character at `at`, or U+FFFD if it is ill-formed, and moves `at` past the bytes
/// read.
char32_t ReadUtf8(std::string_view text, std::size_t& at) noexcept {
  const auto lead = static_cast<std::uint8_t>(text[at++]);
  if (lead < 0x80) {
    return lead;
  }
  auto [followers, least, most] = ClassifyLead(lead);
  if (followers == 0) {
    return kReplacement;
  }
  char32_t character = lead & (0x3F >> followers);
  for (; followers > 0; --followers) {
    const auto byte = at < text.size() ? static_cast<std::uint8_t>(text[at]) : std::uint8_t{0};
    if (byte < least || byte > most) {
      return kReplacement;
    }
    character = (character << 6) | (byte & 0x3F);
    ++at;
    least = 0x80;
    most = 0xBF;
  }
  return character;
}

/// Converts the ASCII characters at the beginning of a text: nearly all texts consist of them.
template <class Out, class In>
std::basic_string<Out> ConvertAsciiPrefix(std::basic_string_view<In> text) {
  const auto end =
      std::find_if(text.begin(), text.end(), [](In unit) { return unit < 0 || unit >= 0x80; });
  std::basic_string<Out> out;
  out.reserve(text.size());
  out.resize(static_cast<std::size_t>(end - text.begin()));
  std::transform(text.begin(), end, out.begin(), [](In unit) { return static_cast<Out>(unit); });
  return out;
}

template <class Unit>
std::string Narrow(std::basic_string_view<Unit> text) {
  auto out = ConvertAsciiPrefix<char>(text);
  for (std::size_t at = out.size(); at < text.size(); ++at) {
    char32_t character = text[at];
    if (IsHighSurrogate(character) && at + 1 < text.size() && IsLowSurrogate(text[at + 1])) {
      character = 0x10000 + ((character & 0x3FF) << 10) + (text[++at] & 0x3FF);
    } else if (IsHighSurrogate(character) || IsLowSurrogate(character)) {
      character = kReplacement;
    }
    AppendUtf8(character, out);
  }
  return out;
}

template <class Unit>
std::basic_string<Unit> Widen(std::string_view text) {
  auto out = ConvertAsciiPrefix<Unit>(text);
  for (std::size_t at = out.size(); at < text.size();) {
    AppendUtf16(ReadUtf8(text, at), out);
  }
  return out;
}

}  // namespace

std::string ToUtf8(std::u16string_view text) { return Narrow(text); }

std::u16string ToUtf16(std::string_view text) { return Widen<char16_t>(text); }

#if WCHAR_MAX == 0xFFFF
std::string ToUtf8(std::wstring_view text) { return Narrow(text); }

std::wstring ToWide(std::string_view text) { return Widen<wchar_t>(text); }
#endif

}  // namespace qm::text
