#include "client/terminal/TextTable.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

#include "client/terminal/Page.h"
#include "client/terminal/Style.h"
#include "client/terminal/Text.h"
#include "client/terminal/TextWidth.h"

namespace mmcat {

namespace {

constexpr size_t kGap = 2;           // blanks between columns
constexpr size_t kMostPadded = 200;  // without a page, wider cells do not widen their column

/// A column of a table, with its heading in cell 0.
struct Column {
  std::vector<const std::string*> cells;
  size_t width = 0;
  bool isNarrowed = false;  ///< some cells are wider
  bool isIdentity = false;  ///< chosen to identify the rows

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

/// The position of the column that identifies a row: the chosen one, or the first with a heading.
size_t FindIdentity(const std::vector<Column>& columns) {
  const auto chosen = std::find_if(columns.begin(), columns.end(),
                                   [](const Column& column) { return column.isIdentity; });
  if (chosen != columns.end()) {
    return static_cast<size_t>(chosen - columns.begin());
  }
  const auto found = std::find_if(columns.begin(), columns.end() - 1,
                                  [](const Column& column) { return !column.Heading().empty(); });
  return static_cast<size_t>(found - columns.begin());
}

/// The columns that a cell takes if its module IDs are as short as possible.
size_t MeasureShortIds(const std::string& cell) {
  return MeasureWidth(ShortenIds(cell, 0, CurrentPage().ellipsis));
}

bool HasIds(const Column& column) {
  return std::any_of(column.cells.begin(), column.cells.end(), [](const std::string* cell) {
    return MeasureShortIds(*cell) < MeasureWidth(*cell);
  });
}

/// The width, in columns of the terminal, to which a column can be shortened and stay readable.
/// That is the width of its widest cell with IDs as short as possible, up to a limit:
/// `widestIdentity` for cells that identify a row.
size_t MeasureReadable(const Column& column, bool isIdentity, size_t widestIdentity) {
  constexpr size_t kText = 20;
  constexpr size_t kIds = 42;
  size_t width = MeasureWidth(column.Heading());
  const size_t most = isIdentity ? widestIdentity : HasIds(column) ? kIds : kText;
  for (const std::string* cell : column.cells) {
    width = std::max(width, std::min(MeasureShortIds(*cell), most));
  }
  return width;
}

/// Removes the columns that are empty or say the same in every row, but never the first. Returns a
/// line for each of them that is not empty.
std::string TakeUniformColumns(std::vector<Column>& columns, const std::string& indent) {
  std::string lines;
  const auto isTaken = [&](const Column& column) {
    const std::string& cell = *column.cells[1];
    // In a single row every column would be uniform.
    if (&column == &columns.front() || !column.IsUniform() ||
        (column.cells.size() == 2 && !cell.empty())) {
      return false;
    }
    lines += cell.empty() ? "" : indent + column.Heading() + " (all rows): " + cell + '\n';
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

/// Leaves out columns from the right, and narrows the others, until they fit into `room`. Returns
/// false, with the columns as they were, if fewer than two would be left.
bool FitColumns(std::vector<Column>& columns, size_t room, size_t widestIdentity) {
  const size_t identity = FindIdentity(columns);
  // A column that was chosen to identify the rows says enough with those before it; otherwise one
  // more must be left.
  const size_t fewest = identity + (identity > 0 && columns[identity].isIdentity ? 1 : 2);
  std::vector<size_t> widths;
  widths.reserve(columns.size());
  for (const Column& column : columns) {
    widths.push_back(MeasureReadable(column, &column == &columns[identity], widestIdentity));
  }
  const auto sum = [&] {
    return std::accumulate(widths.begin(), widths.end(), kGap * (widths.size() - 1));
  };
  while (sum() > room) {
    if (widths.size() <= fewest) {
      return false;
    }
    widths.pop_back();
  }
  std::vector<std::string> leftOut;
  for (size_t i = widths.size(); i < columns.size(); ++i) {
    leftOut.push_back(columns[i].Heading());
  }
  columns.resize(widths.size());
  // Texts get the remaining room first, because more digits of an ID help less.
  for (const bool fillsIds : {false, true}) {
    for (size_t i = 0; i < columns.size(); ++i) {
      if (HasIds(columns[i]) == fillsIds) {
        widths[i] += std::min(columns[i].width - widths[i], room - sum());
      }
    }
  }
  for (size_t i = 0; i < columns.size(); ++i) {
    columns[i].isNarrowed = widths[i] < columns[i].width;
    columns[i].width = widths[i];
    if (columns[i].isNarrowed) {
      NoteShortened({});
    }
  }
  if (!leftOut.empty()) {
    NoteShortened(leftOut);
  }
  return true;
}

/// The cells of a column, shortened to its width. Cells that differ stay different if possible.
std::vector<std::string> ShortenCells(const Column& column) {
  const std::string& ellipsis = CurrentPage().ellipsis;
  std::vector<std::string> best;
  size_t mostDistinct = 0;
  std::set<std::string> whole;
  for (const std::string* cell : column.cells) {
    whole.insert(*cell);
  }
  const auto attempt = [&](auto shorten) {
    std::vector<std::string> cells;
    for (const std::string* cell : column.cells) {
      cells.push_back(shorten(*cell));
    }
    const size_t distinct = std::set<std::string>(cells.begin(), cells.end()).size();
    if (distinct > mostDistinct) {
      mostDistinct = distinct;
      best = std::move(cells);
    }
    return mostDistinct == whole.size();
  };
  const size_t width = column.width;
  if (attempt([&](const std::string& cell) { return ShortenMiddle(cell, width, ellipsis); })) {
    return best;
  }
  for (const size_t end : {width * 2 / 3, width, size_t{0}, width / 2}) {
    if (attempt(
            [&](const std::string& cell) { return ShortenBefore(cell, end, width, ellipsis); })) {
      break;
    }
  }
  return best;
}

/// The cells of a single row, one per line.
std::string FormatFields(const std::vector<Column>& columns, const std::string& indent) {
  size_t width = 0;
  for (const Column& column : columns) {
    width = std::max(width, MeasureWidth(column.Heading()));
  }
  std::string text;
  for (const Column& column : columns) {
    const std::string& heading = column.Heading();
    if (heading.empty()) {
      continue;  // the number of the only row
    }
    text += indent + MarkHeading(heading) + std::string(width - MeasureWidth(heading) + kGap, ' ') +
            *column.cells[1] + '\n';
  }
  return text;
}

struct StackOptions {
  bool isKeptWhole = false;
};

/// A row whose columns do not fit beside each other: what identifies it, and the rest below, with
/// IDs shortened to the page unless cells are kept whole.
std::string FormatStackedRow(const std::vector<Column>& columns, size_t row,
                             const std::string& indent, const StackOptions& options) {
  const Page& page = CurrentPage();
  const size_t identity = FindIdentity(columns);
  std::string text = indent;
  for (size_t i = 0; i <= identity; ++i) {
    text += (i == 0 ? "" : "  ") + *columns[i].cells[row];
  }
  text += '\n';
  for (size_t i = identity + 1; i < columns.size(); ++i) {
    const std::string& cell = *columns[i].cells[row];
    if (!cell.empty()) {
      const std::string start = indent + "    " + columns[i].Heading() + ": ";
      const size_t width = *page.width - std::min(*page.width, MeasureWidth(start));
      const std::string shortened =
          options.isKeptWhole ? cell : ShortenIds(cell, width, page.ellipsis);
      text += start + shortened + '\n';
      if (shortened != cell) {
        NoteShortened({});
      }
    }
  }
  return text;
}

}  // namespace

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
      const size_t width = MeasureWidth(row.cells[i]);
      if (page.width || width <= kMostPadded) {
        columns[i].width = std::max(columns[i].width, width);
      }
    }
  }
  for (Column& column : columns) {
    column.isIdentity = column.Heading() == m_identity && !m_identity.empty();
  }
  const size_t rows = columns.front().cells.size();  // with the headings
  std::string text;
  bool isStacked = false;
  if (page.width && rows > 1) {
    text = TakeUniformColumns(columns, indent);
    if (MeasureTable(columns, indent.size()) > *page.width) {
      if (rows == 2 && !hasLines) {
        return FormatFields(columns, indent);
      }
      // The second attempt shortens long file names, which are few. IDs are not recognised without
      // their names, so they keep the width.
      constexpr size_t kWide = 48;
      const size_t narrow = HasIds(columns[FindIdentity(columns)]) ? kWide : 32;
      const size_t room = *page.width - indent.size();
      isStacked = m_isKeptWhole ||
                  (!FitColumns(columns, room, kWide) && !FitColumns(columns, room, narrow));
    }
  }
  std::vector<std::vector<std::string>> narrowed;  // cells by column
  narrowed.reserve(columns.size());
  for (const Column& column : columns) {
    narrowed.push_back(column.isNarrowed ? ShortenCells(column) : std::vector<std::string>());
  }
  size_t number = 0;
  for (const Row& row : m_rows) {
    if (row.isLine) {
      text += row.cells.front() + '\n';
      continue;
    }
    const size_t position = number++;
    if (isStacked) {
      text += position == 0 ? "" : FormatStackedRow(columns, position, indent, {m_isKeptWhole});
      continue;
    }
    std::string line = indent;
    for (size_t i = 0; i < columns.size(); ++i) {
      const std::string& cell =
          columns[i].isNarrowed ? narrowed[i][position] : *columns[i].cells[position];
      line += cell;
      const size_t width = MeasureWidth(cell);
      line.append(columns[i].width - std::min(width, columns[i].width) + kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += (position == 0 ? MarkHeading(line) : line) + '\n';
  }
  return text;
}

}  // namespace mmcat
