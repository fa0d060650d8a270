#include "client/terminal/TextTable.h"

#include <algorithm>
#include <numeric>

#include "client/terminal/Page.h"
#include "client/terminal/Style.h"
#include "client/terminal/TextWidth.h"

namespace mmcat {

namespace {

constexpr size_t kGap = 2;  // blanks between columns

/// A column of a table, with its heading in cell 0.
struct Column {
  std::vector<const std::string*> cells;
  size_t width = 0;

  const std::string& Heading() const { return *cells.front(); }
  /// Returns whether all rows have the same cell.
  bool IsUniform() const {
    return std::all_of(cells.begin() + 1, cells.end(),
                       [&](const std::string* cell) { return *cell == *cells[1]; });
  }
};

size_t MeasureTable(const std::vector<Column>& columns, size_t indent) {
  const size_t gaps = kGap * (columns.size() - 1);
  return std::accumulate(columns.begin(), columns.end(), indent + gaps,
                         [](size_t sum, const Column& column) { return sum + column.width; });
}

/// The columns to which a column can be shortened without becoming unreadable.
size_t MeasureReadable(const Column& column, bool isFirst) {
  return std::min<size_t>(column.width, isFirst ? 24 : 20);
}

/// Takes out the columns that say the same in every row, or nothing, but never the first. Returns
/// a line for each that says something.
std::string TakeUniformColumns(std::vector<Column>& columns) {
  std::string lines;
  const auto isTaken = [&](const Column& column) {
    const std::string& cell = *column.cells[1];
    // In a single row every column would be uniform.
    if (&column == &columns.front() || !column.IsUniform() ||
        (column.cells.size() == 2 && !cell.empty())) {
      return false;
    }
    lines += cell.empty() ? "" : column.Heading() + ": " + cell + '\n';
    return true;
  };
  std::vector<Column> left;
  for (const Column& column : columns) {
    if (!isTaken(column)) {
      left.push_back(column);
    }
  }
  columns = std::move(left);
  return lines;
}

/// Leaves out columns from the right until the others can be read. Returns their headings.
std::string LeaveOutColumns(std::vector<Column>& columns, size_t indent, size_t pageWidth) {
  constexpr size_t kFewest = 2;
  std::string headings;
  while (columns.size() > kFewest) {
    size_t width = indent;
    for (const Column& column : columns) {
      width += MeasureReadable(column, &column == &columns.front()) + kGap;
    }
    if (width - kGap <= pageWidth) {
      break;
    }
    headings.insert(0, (headings.empty() ? "" : ", ")).insert(0, columns.back().Heading());
    columns.pop_back();
  }
  return headings;
}

/// Narrows the widest columns until the table fits.
void NarrowColumns(std::vector<Column>& columns, size_t indent, size_t pageWidth) {
  while (MeasureTable(columns, indent) > pageWidth) {
    Column* widest = nullptr;
    for (Column& column : columns) {
      const bool isFirst = &column == &columns.front();
      if (column.width > MeasureReadable(column, isFirst) &&
          (!widest || column.width > widest->width)) {
        widest = &column;
      }
    }
    if (!widest) {
      break;
    }
    --widest->width;
  }
}

/// The cells of a single row below each other.
std::string FormatFields(const std::vector<Column>& columns, const std::string& indent) {
  size_t width = 0;
  for (const Column& column : columns) {
    width = std::max(width, MeasureWidth(column.Heading()));
  }
  std::string text;
  for (const Column& column : columns) {
    const std::string& heading = column.Heading();
    text += indent + MarkHeading(heading) + std::string(width - MeasureWidth(heading) + kGap, ' ') +
            *column.cells[1] + '\n';
  }
  return text;
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
  const Page& page = CurrentPage();
  std::vector<Column> columns(m_rows.front().cells.size());
  bool hasLines = false;
  for (const Row& row : m_rows) {
    hasLines = hasLines || row.isLine;
    for (size_t i = 0; !row.isLine && i < row.cells.size(); ++i) {
      columns[i].cells.push_back(&row.cells[i]);
      columns[i].width = std::max(columns[i].width, MeasureWidth(row.cells[i]));
    }
  }
  const size_t rows = columns.front().cells.size();  // with the headings
  std::string text;
  std::string leftOut;
  if (page.width && rows > 1) {
    text = TakeUniformColumns(columns);
    if (rows == 2 && !hasLines && MeasureTable(columns, indent.size()) > *page.width) {
      return FormatFields(columns, indent);
    }
    leftOut = LeaveOutColumns(columns, indent.size(), *page.width);
    NarrowColumns(columns, indent.size(), *page.width);
  }
  size_t number = 0;
  for (const Row& row : m_rows) {
    std::string line = row.isLine ? row.cells.front() : indent;
    for (const Column& column : columns) {
      if (!row.isLine) {
        const std::string cell = ShortenMiddle(*column.cells[number], column.width, page.ellipsis);
        line += cell;
        line.append(column.width - MeasureWidth(cell) + kGap, ' ');
      }
    }
    number += !row.isLine;
    line.erase(line.find_last_not_of(' ') + 1);
    text += (&row == &m_rows.front() ? MarkHeading(line) : line) + '\n';
  }
  return leftOut.empty() ? text : text + "(--wide adds " + leftOut + ")\n";
}

}  // namespace mmcat
