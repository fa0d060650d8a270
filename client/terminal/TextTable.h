#pragma once

#include <string>
#include <utility>
#include <vector>

namespace mmcat {

/// Lays out rows of UTF-8 text in columns as wide as their widest cell. Control characters in cells
/// become blanks.
///
/// On a page of limited width (Page.h), the table fits it: columns without a value are left out;
/// a column whose cells are all equal becomes a line above the table; a single row that is too wide
/// becomes a list of its cells. If that is not enough, columns are left out from the right, and
/// cells are shortened, those that identify a row last: they are in the first column with a
/// heading, unless IdentifyBy names another. If fewer than two columns would be left, each row
/// becomes a list below what identifies it.
///
/// Without a page, nothing is left out or shortened, and very wide cells do not widen their column.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> headings) { AddRow(std::move(headings)); }

  /// Makes the column with this heading identify the rows.
  void IdentifyBy(std::string heading) { m_identity = std::move(heading); }

  /// Makes the table keep every cell whole on a page: if it is too wide, each row becomes a list.
  void KeepWhole() noexcept { m_isKeptWhole = true; }

  /// Adds a row with as many cells as there are headings.
  void AddRow(std::vector<std::string> row);

  /// Adds a line between rows that is not indented and belongs to no column.
  void AddLine(std::string text);

  /// The table as text, with `indent` before every row.
  std::string ToString(const std::string& indent) const;

 private:
  struct Row {
    bool isLine;
    std::vector<std::string> cells;
  };

  std::vector<Row> m_rows;
  std::string m_identity;
  bool m_isKeptWhole = false;
};

}  // namespace mmcat
