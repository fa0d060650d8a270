#include "msidb/ImageDatabase.h"

#include <algorithm>
#include <climits>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "msidb/CodePageText.h"
#include "msidb/InstallerResult.h"
#include "msidb/MsiHandle.h"

namespace qm::msidb {

namespace {

UINT ErrorCodeFor(image::DamagedPart part) noexcept {
  return part == image::DamagedPart::NoDatabase ? ERROR_OPEN_FAILED : ERROR_FILE_CORRUPT;
}

/// Widens a sentence of the image reader, which is ASCII.
common::WideString Widen(std::string_view text) {
  return common::WideString(std::wstring(text.begin(), text.end()));
}

/// Runs `work` and raises its FileError or Damage as a failure of the installer function `call`,
/// which opens the file or its summary information.
template <class Work>
auto RaiseAsOpenFailure(const wchar_t* call, const common::WideString& path, Work work) {
  try {
    return work();
  } catch (const FileError& failure) {
    RaiseFileFailure(failure.code, failure.cause, call, path.c_str());
  } catch (const image::Damage& damage) {
    RaiseFileFailure(ErrorCodeFor(damage.Part()), Widen(damage.what()), call, path.c_str());
  }
}

/// Runs `work` and raises its FileError or Damage as a failure of a query. The calls of a query
/// take no path, so the description's sentence names it.
template <class Work>
auto RaiseAsQueryFailure(const common::WideString& path, Work work) {
  const auto withPath = [&](const common::WideString& cause) {
    return cause.empty() ? cause : path + L": " + cause;
  };
  try {
    return work();
  } catch (const FileError& failure) {
    RaiseFileFailure(failure.code, withPath(failure.cause), L"MsiViewExecute");
  } catch (const image::Damage& damage) {
    const bool isRow = damage.Part() == image::DamagedPart::Row;
    RaiseFileFailure(ErrorCodeFor(damage.Part()), withPath(Widen(damage.what())),
                     isRow ? L"MsiViewFetch" : L"MsiViewExecute");
  }
}

/// Narrows the name of a table or column. All those that the server uses are ASCII.
std::string Narrow(const wchar_t* name) {
  std::string narrow;
  for (; *name; ++name) {
    narrow += static_cast<char>(*name);
  }
  return narrow;
}

/// Parses a decimal number; kNullInteger if the text as a whole is not one, or does not fit.
int ParseInteger(std::string_view text) noexcept {
  const bool isNegative = !text.empty() && text.front() == '-';
  const std::string_view digits = text.substr(isNegative ? 1 : 0);
  long long number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9' || number > INT_MAX) {
      return common::kNullInteger;
    }
    number = number * 10 + (digit - '0');
  }
  number = isNegative ? -number : number;
  if (digits.empty() || number > INT_MAX || number < -INT_MAX) {
    return common::kNullInteger;
  }
  return static_cast<int>(number);
}

/// Returns the row numbers sorted by a column: nulls first, integers by value, texts by their
/// number in the string pool. The sort is stable.
std::vector<std::size_t> SortRowsBy(const image::TableRows& rows, std::size_t column) {
  std::vector<std::size_t> order(rows.Count());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const bool isInteger = rows.Definition().columns[column].kind == image::ColumnKind::Integer;
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return isInteger ? std::pair(rows.Integer(a, column), a) < std::pair(rows.Integer(b, column), b)
                     : std::pair(rows.StringNumber(a, column), a) <
                           std::pair(rows.StringNumber(b, column), b);
  });
  return order;
}

class ImageRows final : public RowCursor {
 public:
  ImageRows(const common::WideString& path, UINT codePage, image::TableRows rows,
            std::vector<std::size_t> order)
      : m_path(path), m_codePage(codePage), m_rows(std::move(rows)), m_order(std::move(order)) {}

  bool Next() override {
    if (m_next == m_rows.Count()) {
      return false;
    }
    m_row = m_order.empty() ? m_next : m_order[m_next];
    ++m_next;
    return true;
  }

  UINT FieldCount() const override { return static_cast<UINT>(Columns().size()); }

  common::WideString GetString(UINT field) const override {
    switch (GetKind(field)) {
      case Kind::Text:
        return DecodeCodePageText(ReadBytes(field), m_codePage);
      case Kind::Integer: {
        const auto number = m_rows.Integer(m_row, field - 1);
        return number ? common::WideString(std::to_wstring(*number)) : common::WideString();
      }
      default:
        return {};
    }
  }

  int GetInteger(UINT field) const override {
    switch (GetKind(field)) {
      case Kind::Text:
        return ParseInteger(ReadBytes(field));
      case Kind::Integer:
        return m_rows.Integer(m_row, field - 1).value_or(common::kNullInteger);
      default:
        return common::kNullInteger;
    }
  }

 private:
  using Kind = image::ColumnKind;

  const std::vector<image::Column>& Columns() const noexcept { return m_rows.Definition().columns; }

  Kind GetKind(UINT field) const noexcept {
    return field - 1 < Columns().size() ? Columns()[field - 1].kind : Kind::Stream;
  }

  std::string_view ReadBytes(UINT field) const {
    return RaiseAsQueryFailure(m_path, [&] {
      const std::string_view bytes = m_rows.Text(m_row, field - 1);
      m_textBytes += bytes.size();
      if (m_textBytes > kMaxTextBytes) {
        image::ThrowDamage(image::DamagedPart::Row, "The rows of table ",
                           image::Quote(m_rows.Definition().name), " have more than ",
                           kMaxTextBytes, " bytes of text.");
      }
      return bytes;
    });
  }

  // Without a limit a small file whose rows all share one long text could exhaust memory.
  static constexpr std::size_t kMaxTextBytes = 64 << 20;

  const common::WideString& m_path;  // owned by the database, which outlives its rows
  UINT m_codePage;
  image::TableRows m_rows;
  std::vector<std::size_t> m_order;  ///< row numbers; empty for the table's own order
  std::size_t m_next = 0;
  std::size_t m_row = 0;
  mutable std::size_t m_textBytes = 0;  ///< total size of the texts read so far
};

}  // namespace

ImageDatabase::ImageDatabase(const common::WideString& path) : m_path(path) {
  RaiseAsOpenFailure(L"MsiOpenDatabase", m_path, [&] {
    m_file.emplace(m_path);
    m_stamp = m_file->Stamp();
    m_database.emplace(*m_file);
    const UINT codePage = m_database->Strings().CodePage();
    if (codePage != CP_ACP && !::IsValidCodePage(codePage)) {
      const std::wstring number = std::to_wstring(codePage);
      throw FileError{ERROR_OPEN_FAILED,
                      common::WideString(L"The texts are in code page " + number +
                                         L", which this system does not have.")};
    }
  });
}

bool ImageDatabase::IsSupported() const { return !m_database->UnknownKind(); }

void ImageDatabase::Verify() {
  RaiseAsOpenFailure(L"MsiOpenDatabase", m_path, [&] {
    m_database->Verify();
    m_database->VerifyStreams();
    for (const image::Defect& defect : m_database->Defects()) {
      if (defect.grade == image::Defect::Grade::Suspicious) {
        throw image::Damage(image::DamagedPart::Structure, defect.sentence);
      }
    }
  });
}

bool ImageDatabase::HasTable(const wchar_t* table) const {
  return m_database->HasTable(Narrow(table));
}

std::unique_ptr<RowCursor> ImageDatabase::ReadTable(const wchar_t* table,
                                                    const wchar_t* orderBy) const {
  const std::string name = Narrow(table);
  if (!m_database->HasTable(name)) {
    RaiseFileFailure(ERROR_BAD_QUERY_SYNTAX, {}, L"MsiOpenDatabaseView");
  }
  return RaiseAsQueryFailure(m_path, [&]() -> std::unique_ptr<RowCursor> {
    image::TableRows rows = GetRows(name);
    std::vector<std::size_t> order;
    if (orderBy) {
      const auto column = rows.Definition().FindColumn(Narrow(orderBy));
      if (!column) {
        RaiseFileFailure(ERROR_BAD_QUERY_SYNTAX, {}, L"MsiOpenDatabaseView");
      }
      order = SortRowsBy(rows, *column);
    }
    return std::make_unique<ImageRows>(m_path, m_database->Strings().CodePage(), std::move(rows),
                                       std::move(order));
  });
}

common::WideString ImageDatabase::ReadSummaryString(UINT property) {
  if (!m_isSummaryRead) {
    m_summary = RaiseAsOpenFailure(L"MsiGetSummaryInformation", m_path,
                                   [&] { return m_database->ReadSummary(); });
    m_isSummaryRead = true;
  }
  const auto text = m_summary ? m_summary->Text(property) : std::nullopt;
  if (!text) {
    return {};
  }
  const UINT codePage = m_summary->CodePage();
  return DecodeCodePageText(*text, ::IsValidCodePage(codePage) ? codePage : CP_ACP);
}

image::TableRows ImageDatabase::GetRows(const std::string& table) const {
  if (m_file) {
    return m_database->ReadTable(table);
  }
  const LoadedTable& loaded = m_loaded.at(table);
  if (loaded.failure) {
    std::rethrow_exception(loaded.failure);
  }
  return *loaded.rows;
}

bool ImageDatabase::LoadAndClose(std::initializer_list<const wchar_t*> tables) {
  for (const wchar_t* const table : tables) {
    const std::string name = Narrow(table);
    if (!m_database->HasTable(name)) {
      continue;
    }
    LoadedTable& loaded = m_loaded[name];
    try {
      loaded.rows.emplace(m_database->ReadTable(name));
    } catch (const image::Damage&) {
      loaded.failure = std::current_exception();
    } catch (const FileError&) {
      loaded.failure = std::current_exception();
    }
  }
  RequireUnchanged();
  m_file.reset();
  return true;
}

bool ImageDatabase::IsCurrent() const { return ModuleFile::IsCurrent(m_path, m_stamp); }

void ImageDatabase::RequireUnchanged() const {
  RaiseAsQueryFailure(m_path, [&] { m_file->RequireUnchanged(); });
}

}  // namespace qm::msidb
