#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "merge/Checks.h"
#include "merge/JoinTexts.h"
#include "merge/MergedCycles.h"
#include "merge/ParentCycles.h"

namespace qm::merge {

namespace {

/// Returns whether a directory needs a row. The installer sets its predefined folders without one.
bool NeedsRow(std::string_view directory) noexcept {
  return directory != "TARGETDIR" && !IsPredefinedFolder(directory.substr(0, directory.find('.')));
}

/// Returns whether the references of a module can be checked: rows that seem to be missing may be
/// those that could not be read.
bool AreRowsComplete(const Module& module) noexcept {
  return module.tables && module.failure.empty();
}

/// Checks the references of the rows of one module. They may refer to rows of other checked
/// modules, because a merge puts all of them into one package.
class ReferenceCheck {
 public:
  ReferenceCheck(const CheckedModules& modules, size_t position, FindingList& findings)
      : m_modules(modules),
        m_position(position),
        m_module(modules.At(position)),
        m_findings(findings) {}

  void Run() {
    CheckComponentsOfFiles();
    CheckDirectories();
    CheckDirectoriesOfComponents();
    CheckItems();
  }

 private:
  void CheckComponentsOfFiles() {
    for (const DeliveredFile& file : m_module.files) {
      // The directory of a file is known if its component has a row in the module.
      if (!file.directory.empty() || m_modules.HasRow("Component", "Component", file.component) ||
          !m_findings.Admit(kMissingComponent)) {
        continue;
      }
      m_findings.AddForFile(
          kMissingComponent, m_position, file, "Component_", file.component,
          "component " + QuoteShort(file.component) + ", which has no row in table Component");
    }
  }

  void CheckDirectories() {
    const std::vector<Directory>& rows = m_module.directories;
    std::unordered_map<std::string_view, size_t> numbers;
    for (size_t i = 0; i < rows.size(); ++i) {
      numbers.emplace(rows[i].key, i);
    }
    std::vector<size_t> parents(rows.size(), kNoParent);
    for (size_t i = 0; i < rows.size(); ++i) {
      const auto parent = numbers.find(rows[i].parent);
      if (rows[i].parent.empty() || rows[i].parent == rows[i].key) {
        continue;
      }
      if (parent != numbers.end()) {
        parents[i] = parent->second;
      } else {
        CheckDirectory("Directory", rows[i].key, "Directory_Parent", rows[i].parent);
      }
    }
    for (const std::vector<size_t>& cycle : FindParentCycles(parents)) {
      // The installer does not follow a cycle that contains a predefined folder.
      if (std::all_of(cycle.begin(), cycle.end(),
                      [&](size_t at) { return NeedsRow(rows[at].key); })) {
        AddCycle(cycle);
      }
    }
  }

  void AddCycle(const std::vector<size_t>& cycle) {
    if (!m_findings.Admit(kDirectoryCycle)) {
      return;
    }
    std::vector<std::string> keys;
    keys.reserve(cycle.size());
    for (const size_t at : cycle) {
      keys.push_back(Shorten(m_module.directories[at].key));
    }
    Finding& finding = m_findings.AddForCell(
        kDirectoryCycle, {m_position, "Directory", keys.front(), "Directory", keys.front()},
        "directories of " + m_findings.NameOf(m_position) +
            " lie below one another, and the last one below the first: " + JoinSome(keys, ", "));
    const size_t count = std::min(keys.size(), FindingList::kMaxModules);
    for (size_t i = 1; i < count; ++i) {
      finding.values.push_back({m_position, "Directory", keys[i]});
    }
  }

  void CheckDirectoriesOfComponents() {
    std::vector<std::string_view> keys;
    for (const Directory& directory : m_module.directories) {
      keys.push_back(directory.key);
    }
    std::sort(keys.begin(), keys.end());
    for (const Component& component : m_module.components) {
      if (!std::binary_search(keys.begin(), keys.end(), component.directory)) {
        CheckDirectory("Component", component.key, "Directory_", component.directory);
      }
    }
  }

  /// Adds a finding for a directory without a row in the module, unless it needs none or another
  /// module has it.
  void CheckDirectory(const char* table, std::string_view row, const char* column,
                      std::string_view directory) {
    if (!NeedsRow(directory) || m_modules.HasRow("Directory", "Directory", directory) ||
        !m_findings.Admit(kMissingDirectory)) {
      return;
    }
    m_findings.AddForCell(kMissingDirectory, {m_position, table, row, column, directory},
                          "row " + Shorten(row) + " of table " + table + " in " +
                              m_findings.NameOf(m_position) + " refers to directory " +
                              QuoteShort(directory) + ", which has no row");
  }

  /// The items that ModuleSubstitution uses must be in ModuleConfiguration of the same module: the
  /// merge asks for their values by these rows.
  void CheckItems() {
    const Table* const table = m_module.FindTable("ModuleSubstitution");
    const auto value = table ? table->FindColumn("Value") : std::nullopt;
    if (!value) {
      return;
    }
    const std::vector<std::string_view> declared = ReadItems();
    std::unordered_map<std::uint32_t, std::string_view> items;  // rows may share a long text
    for (size_t row = 0; row < table->RowCount(); ++row) {
      const auto [item, isNew] = items.try_emplace(table->TextNumber(row, *value));
      if (isNew) {
        item->second = FindUndeclaredItem(table->Text(row, *value), declared);
      }
      if (!item->second.empty() && m_findings.Admit(kUndeclaredItem)) {
        m_findings.AddForCell(
            kUndeclaredItem,
            {m_position, table->Name(), FormatKey(*table, row), "Value", table->Text(row, *value)},
            m_findings.NameOf(m_position) + " uses the configurable item " +
                QuoteShort(item->second) + ", which has no row in table ModuleConfiguration");
      }
    }
  }

  std::vector<std::string_view> ReadItems() const {
    std::vector<std::string_view> names;
    const Table* const table = m_module.FindTable("ModuleConfiguration");
    const auto name = table ? table->FindColumn("Name") : std::nullopt;
    for (size_t row = 0; name && row < table->RowCount(); ++row) {
      const std::string_view text = table->Text(row, *name);
      if (text.size() <= kMaxKeySize) {  // rows that share a long one would compare it repeatedly
        names.push_back(text);
      }
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  /// Returns the first item, such as "[=Item]", that is not declared; empty if all are.
  static std::string_view FindUndeclaredItem(std::string_view text,
                                             const std::vector<std::string_view>& declared) {
    for (size_t begin = 0; (begin = text.find("[=", begin)) != std::string_view::npos;) {
      if (begin > 0 && text[begin - 1] == '\\') {  // escaped
        begin += 2;
        continue;
      }
      const size_t end = text.find(']', begin);
      if (end == std::string_view::npos) {
        break;
      }
      const std::string_view item = text.substr(begin + 2, end - begin - 2);
      if (!std::binary_search(declared.begin(), declared.end(), item)) {
        return item;
      }
      begin = end + 1;
    }
    return {};
  }

  static std::string FormatKey(const Table& table, size_t row) {
    std::vector<std::string> cells;
    for (size_t column = 0; column < table.Columns().size(); ++column) {
      if (table.Columns()[column].isKey) {
        cells.push_back(Shorten(table.Text(row, column)));
      }
    }
    return JoinTexts(cells, "/");
  }

  const CheckedModules& m_modules;
  size_t m_position;
  const Module& m_module;
  FindingList& m_findings;
};

/// Finds circles of directories that only the merge closes.
void CheckMergedDirectories(const CheckedModules& modules, FindingList& findings) {
  std::vector<LinkedRow> rows;
  for (const size_t position : modules.Scope()) {
    if (AreRowsComplete(modules.At(position))) {
      for (const Directory& directory : modules.At(position).directories) {
        const bool isRoot = !NeedsRow(directory.key) || directory.parent == directory.key;
        rows.push_back({position, directory.key, isRoot ? std::string_view() : directory.parent});
      }
    }
  }
  AddMergedCycles(rows,
                  {kDirectoryCycle, "Directory", "Directory_Parent",
                   "once merged, directories lie below one another, and the last one below the "
                   "first: "},
                  findings);
}

}  // namespace

void CheckReferences(const CheckedModules& modules, FindingList& findings) {
  for (const size_t position : modules.Scope()) {
    if (AreRowsComplete(modules.At(position))) {
      ReferenceCheck(modules, position, findings).Run();
    }
  }
  if (modules.IsMerge()) {
    CheckMergedDirectories(modules, findings);
  }
}

}  // namespace qm::merge
