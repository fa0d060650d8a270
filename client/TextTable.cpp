#include "client/TextTable.h"

#include <algorithm>

namespace {

/// Characters of UTF-8 text, so that columns of accented names line up.
size_t Width(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

std::string TextTable::ToString(const std::string& indent) const {
  std::vector<size_t> widths(m_rows.front().size());
  for (const auto& row : m_rows) {
    for (size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], Width(row[column]));
    }
  }
  std::string text;
  for (const auto& row : m_rows) {
    std::string line = indent;
    for (size_t column = 0; column < row.size(); ++column) {
      line += row[column];
      line.append(widths[column] - Width(row[column]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}
