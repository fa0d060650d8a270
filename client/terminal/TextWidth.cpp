#include "client/terminal/TextWidth.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace mmcat {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// The blocks whose characters take no column: combining marks, joiners, selectors.
constexpr Range kZeroWidth[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A},   {0x064B, 0x065F},
    {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20FF},   {0x3099, 0x309A},
    {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF},
};

// The blocks whose characters take two columns: East Asian scripts, full-width forms, emoji.
constexpr Range kDoubleWidth[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
    {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},
    {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x16FE0, 0x18CFF}, {0x1B000, 0x1B2FF}, {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF},
    {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

template <size_t N>
bool IsIn(const Range (&ranges)[N], char32_t character) noexcept {
  const auto* const range =
      std::lower_bound(std::begin(ranges), std::end(ranges), character,
                       [](const Range& one, char32_t wanted) { return one.last < wanted; });
  return range != std::end(ranges) && range->first <= character;
}

/// A piece of text that is never divided: a character, or a mark for colours.
struct Piece {
  size_t bytes;
  size_t columns;
};

Piece ReadPiece(std::string_view text) noexcept {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead == 0x1B) {
    return {std::min(text.find('m'), text.size() - 1) + 1, 0};
  }
  const size_t bytes = std::min<size_t>(lead < 0xC0   ? 1
                                        : lead < 0xE0 ? 2
                                        : lead < 0xF0 ? 3
                                                      : 4,
                                        text.size());
  constexpr unsigned kLeadBits[] = {0x7F, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t character = lead & kLeadBits[bytes];
  for (size_t i = 1; i < bytes; ++i) {
    character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  return {bytes, IsIn(kZeroWidth, character) ? 0U : IsIn(kDoubleWidth, character) ? 2U : 1U};
}

/// The last part of a path, with the slash before it; empty if the text is not a path.
std::string_view LastPart(std::string_view text) noexcept {
  const size_t slash = text.find_last_of("\\/");
  return slash == std::string_view::npos || slash == 0 ? "" : text.substr(slash);
}

/// Finds the GUIDs of module IDs in a text, such as that of
/// "TinyZip.DC6CE4A1310E463AA8F3B6C562EFDD90:1033", without the dots before them.
std::vector<std::string_view> FindGuids(std::string_view text) {
  constexpr size_t kGuidDigits = 32;
  std::vector<std::string_view> guids;
  for (size_t dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.', dot + 1)) {
    const size_t end =
        std::min(text.find_first_not_of("0123456789ABCDEFabcdef_", dot + 1), text.size());
    if (end - dot > kGuidDigits) {
      guids.push_back(text.substr(dot + 1, end - dot - 1));
    }
  }
  return guids;
}

/// Shortens each of `guids`, which are views of `text`, to `digits` digits and the ellipsis.
std::string ShortenGuids(const std::string& text, const std::vector<std::string_view>& guids,
                         size_t digits, const std::string& ellipsis) {
  std::string shortened;
  const char* position = text.data();
  for (const std::string_view guid : guids) {
    shortened.append(position, guid.data() + digits).append(ellipsis);
    position = guid.data() + guid.size();
  }
  return shortened.append(position, text.data() + text.size());
}

std::string ShortenBetween(std::string_view text, size_t start, size_t end,
                           const std::string& ellipsis) {
  return std::string(TakeStart(text, start)) + ellipsis + std::string(TakeEnd(text, end));
}

}  // namespace

size_t MeasureWidth(std::string_view text) noexcept {
  size_t width = 0;
  while (!text.empty()) {
    const Piece piece = ReadPiece(text);
    width += piece.columns;
    text.remove_prefix(piece.bytes);
  }
  return width;
}

std::string_view TakeStart(std::string_view text, size_t width) noexcept {
  size_t bytes = 0;
  while (bytes < text.size()) {
    const Piece piece = ReadPiece(text.substr(bytes));
    if (piece.columns > width) {
      break;
    }
    width -= piece.columns;
    bytes += piece.bytes;
  }
  return text.substr(0, bytes);
}

std::string_view TakeEnd(std::string_view text, size_t width) noexcept {
  size_t left = MeasureWidth(text);
  while (left > width) {
    const Piece piece = ReadPiece(text);
    left -= piece.columns;
    text.remove_prefix(piece.bytes);
  }
  return text;
}

std::string ShortenIds(const std::string& text, size_t width, const std::string& ellipsis) {
  const std::vector<std::string_view> guids = FindGuids(text);
  if (guids.empty() || MeasureWidth(text) <= width) {
    return text;
  }
  size_t others = MeasureWidth(text) + guids.size() * MeasureWidth(ellipsis);
  for (const std::string_view guid : guids) {
    others -= guid.size();
  }
  constexpr size_t kFewest = 3;
  constexpr size_t kMost = 31;  // one less than a GUID has
  const size_t digits = (width - std::min(others, width)) / guids.size();
  return ShortenGuids(text, guids, std::min(std::max(digits, kFewest), kMost), ellipsis);
}

std::string ShortenBefore(const std::string& text, size_t end, size_t width,
                          const std::string& ellipsis) {
  if (MeasureWidth(text) <= width) {
    return text;
  }
  const size_t room = width - std::min(MeasureWidth(ellipsis), width);
  const size_t kept = std::min(end, room);
  return ShortenBetween(text, room - kept, kept, ellipsis);
}

std::string ShortenMiddle(const std::string& text, size_t width, const std::string& ellipsis) {
  if (MeasureWidth(text) <= width) {
    return text;
  }
  const size_t room = width - std::min(MeasureWidth(ellipsis), width);
  const size_t part = MeasureWidth(LastPart(text));
  if (part > 0 && part <= room) {
    return ShortenBefore(text, part, width, ellipsis);
  }
  return ShortenBefore(ShortenIds(text, width, ellipsis), room / 3, width, ellipsis);
}

}  // namespace mmcat
