#pragma once

#include <string>
#include <vector>

namespace qm::merge {

/// Joins texts with `between` as the separator.
inline std::string JoinTexts(const std::vector<std::string>& texts, const char* between) {
  std::string joined;
  for (const std::string& text : texts) {
    joined += (&text == &texts.front() ? "" : between) + text;
  }
  return joined;
}

}  // namespace qm::merge
