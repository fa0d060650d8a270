#pragma once

#include <string>
#include <vector>

/// Text on one line, without the control characters that a terminal would obey.
std::string Printable(std::string text);

/// Rows of UTF-8 text in columns that are as wide as their widest cell. Control characters in a
/// cell become blanks.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> headings) { Add(std::move(headings)); }

  /// A row has as many cells as there are headings.
  void Add(std::vector<std::string> row);

  /// A line of its own between rows: not indented, and no part of a column.
  void AddLine(std::string text);

  /// The table with `indent` before every row.
  std::string ToString(const std::string& indent) const;

 private:
  struct Row {
    bool isLine;
    std::vector<std::string> cells;
  };

  std::vector<Row> m_rows;
};
