#include "client/terminal/TextTable.h"

#include <algorithm>

#include "client/terminal/Style.h"

namespace mmcat {

namespace {

/// The number of characters in UTF-8 text, so that columns with accented names line up.
size_t CountCharacters(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

std::string MakePrintable(std::string text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
    if (c < 0x20 || c == 0x7F) {
      text[i] = ' ';
    } else if (c == 0xC2 && next < 0xA0) {  // U+0080 to U+009F
      text.replace(i, 2, " ");
    }
  }
  return text;
}

void TextTable::AddRow(std::vector<std::string> row) {
  for (std::string& cell : row) {
    cell = MakePrintable(std::move(cell));
  }
  m_rows.push_back({false, std::move(row)});
}

void TextTable::AddLine(std::string text) {
  m_rows.push_back({true, {MakePrintable(std::move(text))}});
}

std::string TextTable::ToString(const std::string& indent) const {
  std::vector<size_t> widths(m_rows.front().cells.size());
  for (const Row& row : m_rows) {
    for (size_t column = 0; !row.isLine && column < row.cells.size(); ++column) {
      widths[column] = std::max(widths[column], CountCharacters(row.cells[column]));
    }
  }
  std::string text;
  for (const Row& row : m_rows) {
    std::string line = row.isLine ? "" : indent;
    for (size_t column = 0; column < row.cells.size(); ++column) {
      line += row.cells[column];
      if (!row.isLine) {
        line.append(widths[column] - CountCharacters(row.cells[column]) + 2, ' ');
      }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += (&row == &m_rows.front() ? MarkHeading(line) : line) + '\n';
  }
  return text;
}

}  // namespace mmcat
