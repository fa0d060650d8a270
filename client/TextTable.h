#pragma once

#include <string>
#include <vector>

/// Rows of UTF-8 text in columns that are as wide as their widest cell.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> headings) { Add(std::move(headings)); }

  /// A row has as many cells as there are headings.
  void Add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }

  /// The table with `indent` before every line.
  std::string ToString(const std::string& indent) const;

 private:
  std::vector<std::vector<std::string>> m_rows;
};
