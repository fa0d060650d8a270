#include "merge/ReadModule.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

#include "text/Ascii.h"
#include "text/Fold.h"
#include "text/Utf.h"

namespace qm::merge {

namespace {

// Properties of the summary information.
constexpr std::uint32_t kSubject = 3;
constexpr std::uint32_t kAuthor = 4;
constexpr std::uint32_t kComments = 6;
constexpr std::uint32_t kTemplate = 7;
constexpr std::uint32_t kPackageCode = 9;
constexpr std::uint32_t kMinimumInstaller = 14;

/// The language of a module whose language is null, as in the catalog.
constexpr long kNullLanguage = std::numeric_limits<std::int32_t>::min();

std::optional<long> ParseNumber(std::string_view text) noexcept {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? std::optional<long>(number)
                                                                  : std::nullopt;
}

/// Removes the part of `text` before the next separator and returns it.
std::string_view ConsumePart(std::string_view& text, char separator) noexcept {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

bool IsSameId(std::string_view a, std::string_view b) {
  return a == b || text::FoldCase(a) == text::FoldCase(b);
}

/// The rows of a table, restricted to the columns that a reader wants.
class WantedRows {
 public:
  /// Longer keys and names, in bytes, are damage. No installer accepts them, and rows that share a
  /// long text would take more work than the size of the file justifies.
  static constexpr std::size_t kMaxNameSize = 1024;

  /// The total size of keys and names of a table, for the same reason.
  static constexpr std::size_t kMaxSizeOfNames = 64 << 20;

  using Names = std::initializer_list<std::string_view>;

  /// `names` has at most 8 columns. The table may lack the column `optional`.
  WantedRows(const Table& table, Names names, std::string_view optional) : m_table(table) {
    auto* column = m_columns.begin();
    for (const std::string_view name : names) {
      *column = table.FindColumn(name);
      if (!*column++ && m_missing.empty() && name != optional) {
        m_missing = name;
      }
    }
  }

  /// The name of the first wanted column that the table does not have; empty if it has all.
  std::string_view MissingColumn() const noexcept { return m_missing; }

  /// The text of a column, by its position in the list of names; empty if the table lacks it.
  std::string_view Text(std::size_t row, std::size_t column) const noexcept {
    return m_columns[column] ? m_table.Text(row, *m_columns[column]) : std::string_view();
  }

  /// The same as a string, for a column that may hold numbers too.
  std::string String(std::size_t row, std::size_t column) const {
    return m_columns[column] ? m_table.Format(row, *m_columns[column]) : std::string();
  }

  /// The number in a column, or the number that its text spells; nothing if there is neither.
  std::optional<long> Number(std::size_t row, std::size_t column) const noexcept {
    if (!m_columns[column]) {
      return std::nullopt;
    }
    if (const auto number = m_table.Number(row, *m_columns[column])) {
      return *number;
    }
    return ParseNumber(m_table.Text(row, *m_columns[column]));
  }

  /// Returns the total size of the texts in the first `count` columns of a row; SIZE_MAX if one is
  /// too long.
  std::size_t MeasureNames(std::size_t row, std::size_t count) const noexcept {
    std::size_t total = 0;
    for (std::size_t column = 0; column < count; ++column) {
      const std::size_t size = Text(row, column).size();
      if (size > kMaxNameSize) {
        return SIZE_MAX;
      }
      total += size;
    }
    return total;
  }

 private:
  const Table& m_table;
  std::array<std::optional<std::size_t>, 8> m_columns;
  std::string_view m_missing;
};

class ModuleReader {
 public:
  ModuleReader(image::Database& database, const DecodeText& decode, SharedStreams* shared)
      : m_database(database), m_decode(decode), m_shared(shared) {}

  Module Read() {
    m_module.tables = std::make_shared<const ModuleTables>(m_database, m_decode, m_shared);
    AddFailure(m_module.tables->Failure());
    ReadSummary();
    ReadSignature();
    ReadRequirements();
    ReadExclusions();
    ReadDirectories();
    ReadComponents();
    ReadFiles();
    ReadCustomActions();
    return std::move(m_module);
  }

 private:
  void AddFailure(const std::string& failure) {
    if (m_module.failure.empty()) {
      m_module.failure = failure;
    }
  }

  // ---- Summary

  void ReadSummary() {
    try {
      const auto summary = m_database.ReadSummary();
      if (!summary) {
        return;
      }
      m_module.subject = DecodeProperty(*summary, kSubject);
      m_module.author = DecodeProperty(*summary, kAuthor);
      m_module.comments = DecodeProperty(*summary, kComments);
      m_module.packageCode = DecodeProperty(*summary, kPackageCode);
      m_module.minimumInstaller = summary->Integer(kMinimumInstaller);
      ParseTemplate(DecodeProperty(*summary, kTemplate));
    } catch (const image::Damage& damage) {
      AddFailure(damage.what());
    }
  }

  std::string DecodeProperty(const image::SummaryInformation& summary,
                             std::uint32_t property) const {
    const std::string_view bytes = summary.Text(property).value_or("");
    if (text::IsAsciiSuperset(summary.CodePage()) && text::IsAscii(bytes)) {
      return std::string(bytes);
    }
    if (auto text = m_decode(bytes, summary.CodePage())) {
      return *std::move(text);
    }
    return m_decode(bytes, 0).value_or("");  // as the catalog reads it
  }

  /// Parses "Intel;1033,2057".
  void ParseTemplate(std::string_view text) {
    m_module.platform = ConsumePart(text, ';');
    while (!text.empty()) {
      if (const auto language = ParseNumber(ConsumePart(text, ','))) {
        m_module.languages.push_back(*language);
      }
    }
  }

  // ---- Tables

  /// Calls `use` for every row of a table. The first `names` columns are keys or names: rows in
  /// which one of them is too long are skipped, with a failure. The table may lack the column
  /// `optional`.
  template <class Use>
  void ForEachRow(const char* table, WantedRows::Names columns, std::size_t names, Use use,
                  std::string_view optional = {}) {
    const Table* const found = m_module.FindTable(table);
    if (!found || (!found->Failure().empty() && found->RowCount() == 0)) {
      return;
    }
    const WantedRows rows(*found, columns, optional);
    if (!rows.MissingColumn().empty()) {
      AddFailure(std::string("Table \"") + table + "\" has no column \"" +
                 std::string(rows.MissingColumn()) + "\".");
    }
    std::size_t left = WantedRows::kMaxSizeOfNames;
    for (std::size_t row = 0; row < found->RowCount(); ++row) {
      const std::size_t size = rows.MeasureNames(row, names);
      if (size == SIZE_MAX) {
        AddFailure("Row " + std::to_string(row + 1) + " of table \"" + table +
                   "\" has a name of more than " + std::to_string(WantedRows::kMaxNameSize) +
                   " bytes.");
        continue;
      }
      if (size > left) {
        AddFailure(std::string("The rows of table \"") + table + "\" have more than " +
                   std::to_string(WantedRows::kMaxSizeOfNames) + " bytes of names.");
        return;
      }
      left -= size;
      use(rows, row);
    }
  }

  void ReadSignature() {
    if (m_module.tables->Failure().empty() && !m_module.FindTable("ModuleSignature")) {
      AddFailure("There is no table \"ModuleSignature\".");
    }
    bool isFirst = true;
    ForEachRow(
        "ModuleSignature", {"ModuleID", "Version", "Language"}, 2,
        [&](const WantedRows& rows, std::size_t row) {
          ModuleSignature signature{rows.String(row, 0), rows.Number(row, 2), rows.String(row, 1)};
          if (std::exchange(isFirst, false)) {
            m_module.moduleId = std::move(signature.moduleId);
            m_module.language = signature.language.value_or(kNullLanguage);
            m_module.version = std::move(signature.version);
          } else {
            m_module.carried.push_back(std::move(signature));
          }
        });
    m_module.key = MakeModuleKey(m_module.moduleId, m_module.language);
  }

  /// Returns the key of the carried module that a row belongs to; empty if the row is the module's
  /// own. The ID decides: a module has one language, so a row with its ID and another language is
  /// an author's mistake. A module without an ID owns all its rows.
  std::string FindOwner(const WantedRows& rows, std::size_t row) const {
    if (rows.Text(row, 0) == m_module.moduleId) {
      return {};
    }
    const std::string id = rows.String(row, 0);
    return id.empty() || m_module.moduleId.empty() || IsSameId(id, m_module.moduleId)
               ? std::string()
               : MakeModuleKey(id, rows.Number(row, 4).value_or(kNullLanguage));
  }

  void ReadRequirements() {
    ForEachRow("ModuleDependency",
               {"ModuleID", "RequiredID", "RequiredVersion", "RequiredLanguage", "ModuleLanguage"},
               3, [&](const WantedRows& rows, std::size_t row) {
                 m_module.requirements.push_back({rows.String(row, 1), rows.Number(row, 3),
                                                  rows.String(row, 2), FindOwner(rows, row)});
               });
  }

  void ReadExclusions() {
    ForEachRow("ModuleExclusion",
               {"ModuleID", "ExcludedID", "ExcludedMinVersion", "ExcludedMaxVersion",
                "ModuleLanguage", "ExcludedLanguage"},
               4, [&](const WantedRows& rows, std::size_t row) {
                 m_module.exclusions.push_back({rows.String(row, 1), rows.Number(row, 5),
                                                rows.String(row, 2), rows.String(row, 3),
                                                FindOwner(rows, row)});
               });
  }

  void ReadDirectories() {
    ForEachRow(
        "Directory", {"Directory", "Directory_Parent", "DefaultDir"}, 3,
        [&](const WantedRows& rows, std::size_t row) {
          m_module.directories.push_back({rows.Text(row, 0), rows.Text(row, 1), rows.Text(row, 2)});
        });
  }

  /// The installer does not require the column KeyPath. Without it, the key path of a component is
  /// its directory, as if the column were null.
  void ReadComponents() {
    ForEachRow(
        "Component",
        {"Component", "Directory_", "KeyPath", "ComponentId", "Condition", "Attributes"}, 4,
        [&](const WantedRows& rows, std::size_t row) {
          m_module.components.push_back({rows.Text(row, 0), rows.Text(row, 3), rows.Text(row, 1),
                                         rows.Number(row, 5), rows.Text(row, 4),
                                         rows.Text(row, 2)});
        },
        "KeyPath");
  }

  void ReadFiles() {
    SortComponents();
    ForEachRow("File",
               {"File", "Component_", "FileName", "Version", "Language", "FileSize", "Sequence"}, 5,
               [&](const WantedRows& rows, std::size_t row) {
                 DeliveredFile file =
                     MakeDeliveredFile(rows.Text(row, 2), FindDirectory(rows.Text(row, 1)),
                                       rows.Text(row, 0), rows.Text(row, 3), rows.Number(row, 5));
                 file.language = rows.Text(row, 4);
                 file.sequence = rows.Number(row, 6);
                 file.component = rows.Text(row, 1);
                 m_module.files.push_back(file);
               });
  }

  void SortComponents() {
    for (const Component& component : m_module.components) {
      m_componentsByKey.push_back(&component);
    }
    std::sort(m_componentsByKey.begin(), m_componentsByKey.end(),
              [](const Component* a, const Component* b) {
                return a->key < b->key || (a->key == b->key && a < b);  // in the order of the file
              });
  }

  /// Returns the directory of the first component with a key; empty if there is none.
  std::string_view FindDirectory(std::string_view component) const noexcept {
    const auto found = std::lower_bound(
        m_componentsByKey.begin(), m_componentsByKey.end(), component,
        [](const Component* one, std::string_view wanted) { return one->key < wanted; });
    return found == m_componentsByKey.end() || (*found)->key != component ? std::string_view()
                                                                          : (*found)->directory;
  }

  void ReadCustomActions() {
    ForEachRow("CustomAction", {"Action", "Source", "Target", "Type"}, 2,
               [&](const WantedRows& rows, std::size_t row) {
                 m_module.customActions.push_back({rows.Text(row, 0), rows.Number(row, 3),
                                                   rows.Text(row, 1), rows.Text(row, 2)});
               });
  }

  image::Database& m_database;
  const DecodeText& m_decode;
  SharedStreams* m_shared;
  Module m_module;
  std::vector<const Component*> m_componentsByKey;  ///< of m_module
};

/// The characters of Windows-1252 from 0x80 to 0x9F; the others are those of ISO 8859-1.
constexpr char16_t kWindows1252[] = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021,
                                     0x2C6,  0x2030, 0x160,  0x2039, 0x152,  0x8D,   0x17D,  0x8F,
                                     0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                     0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

}  // namespace

Module ReadModule(image::ByteSource& source, const DecodeText& decode, SharedStreams* shared) {
  std::string failure;
  try {
    image::Database database(source);
    return ReadModule(database, decode, shared);
  } catch (const image::Damage& damage) {
    failure = damage.what();
  }
  Module module;
  module.key = MakeModuleKey("", module.language);
  module.failure = std::move(failure);
  return module;
}

Module ReadModule(image::Database& database, const DecodeText& decode, SharedStreams* shared) {
  return ModuleReader(database, decode, shared).Read();
}

std::optional<std::string> DecodeCommonCodePage(std::string_view bytes, std::uint32_t codePage) {
  constexpr std::uint32_t kAscii = 20127;
  constexpr std::uint32_t kLatin1 = 28591;
  constexpr std::uint32_t kUtf8 = 65001;
  if (codePage == kUtf8 || codePage == kAscii) {
    return text::ToUtf8(text::ToUtf16(bytes));  // replaces what is ill-formed
  }
  if (codePage != 0 && codePage != 1252 && codePage != kLatin1) {
    return std::nullopt;
  }
  std::u16string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    const bool isMapped = codePage != kLatin1 && value >= 0x80 && value < 0xA0;
    text += isMapped ? kWindows1252[value - 0x80] : char16_t{value};
  }
  return text::ToUtf8(text);
}

}  // namespace qm::merge
