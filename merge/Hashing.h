#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "text/Fold.h"

namespace qm::merge {

// Hashes for finding equal texts among all modules of a set. Not stored anywhere.

constexpr std::uint64_t kHashSeed = 0x9E3779B97F4A7C15U;

inline std::uint64_t HashNumber(std::uint64_t hash, std::uint64_t number) noexcept {
  hash = (hash ^ number) * 0xFF51AFD7ED558CCDU;
  return hash ^ hash >> 32U;
}

inline std::uint64_t HashText(std::uint64_t hash, std::string_view text) noexcept {
  const std::uint64_t size = text.size();
  while (text.size() >= sizeof(std::uint64_t)) {
    std::uint64_t part = 0;
    std::memcpy(&part, text.data(), sizeof part);
    hash = HashNumber(hash, part);
    text.remove_prefix(sizeof part);
  }
  std::uint64_t rest = 0;
  if (!text.empty()) {
    std::memcpy(&rest, text.data(), text.size());
  }
  return HashNumber(HashNumber(hash, rest), size);
}

/// Returns a hash of the folded text: texts that differ only in case have the same hash.
inline std::uint64_t HashFolded(std::string_view text) {
  std::uint64_t hash = kHashSeed;
  for (const char character : text) {
    auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x80) {
      return HashText(kHashSeed, text::FoldCase(text));
    }
    byte = byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte | 0x20U) : byte;
    hash = (hash ^ byte) * 0x100000001B3U;
  }
  return HashNumber(hash, text.size());
}

inline bool IsSameFolded(std::string_view a, std::string_view b) {
  return a == b || text::FoldCase(a) == text::FoldCase(b);
}

}  // namespace qm::merge
