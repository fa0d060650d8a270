#pragma once

#include <string>
#include <vector>

namespace qm::tests {

/// A table of a module to build.
struct TableText {
  const wchar_t* name;
  /// Rows that end in a line break, with tabs between their cells.
  std::string rows;
  /// Column names, column types and key columns, a line each; empty for the usual ones.
  std::string header{};
};

/// Makes the module database `path` of these tables.
void BuildModule(const std::wstring& path, const std::vector<TableText>& tables);

/// Makes a small module that has every table, each with several rows and no two values alike.
void BuildRichModule(const std::wstring& path);

}  // namespace qm::tests
