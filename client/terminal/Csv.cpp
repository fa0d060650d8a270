#include "client/terminal/Csv.h"

namespace mmcat {

namespace {

std::string QuoteCell(const std::string& cell) {
  if (cell.find_first_of(",\"\r\n") == std::string::npos) {
    return cell;
  }
  std::string quoted = "\"";
  for (size_t i = 0; i < cell.size(); ++i) {
    const bool isLineEnd = cell[i] == '\r' && cell[i + 1] == '\n';  // the output turns LF into CRLF
    quoted.append(isLineEnd ? 0 : cell[i] == '"' ? 2 : 1, cell[i]);
  }
  return quoted + '"';
}

std::string FormatCell(const Json& row, const std::string& column) {
  const auto cell = row.find(column);
  if (cell == row.end() || cell->is_null()) {
    return "";
  }
  return cell->is_string() ? QuoteCell(cell->get<std::string>()) : cell->dump();
}

}  // namespace

std::string FormatCsv(const std::vector<std::string>& columns, const Json& rows) {
  // The C library ends each line with CRLF.
  std::string text;
  for (const std::string& column : columns) {
    text += (text.empty() ? "" : ",") + column;
  }
  text += '\n';
  for (const Json& row : rows) {
    std::string line;
    for (const std::string& column : columns) {
      line += (&column == &columns.front() ? "" : ",") + FormatCell(row, column);
    }
    text += line + '\n';
  }
  return text;
}

}  // namespace mmcat
