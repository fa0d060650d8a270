#include <algorithm>
#include <unordered_map>

#include "merge/Checks.h"
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
