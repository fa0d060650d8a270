#include <algorithm>
#include <unordered_map>

#include "merge/Checks.h"

namespace qm::merge {

namespace {

/// Checks what rows of one module refer to. Rows of other modules of the check count too: a merge
/// puts all into one package.
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
      // A file of a component has the directory of the component.
      if (!file.directory.empty() || m_modules.HasRow("Component", "Component", file.component) ||
          !m_findings.Admit(kMissingComponent)) {
        continue;
      }
      Finding& finding = m_findings.Add(
          kMissingComponent, {m_position},
          m_findings.NameOf(m_position) + " delivers " + Shorten(file.name) + " with component " +
              QuoteShort(file.component) + ", which has no row in table Component");
      finding.table = "File";
      finding.key = Shorten(file.key);
      finding.file = Shorten(file.name);
      finding.values = {{m_position, "Component_", Shorten(file.component)}};
    }
  }

  /// The installer sets the folders that it knows, with or without a row.
  static bool NeedsRow(std::string_view directory) noexcept {
    return directory != "TARGETDIR" &&
           !IsPredefinedFolder(directory.substr(0, directory.find('.')));
  }

  void CheckDirectories() {
    const std::vector<Directory>& rows = m_module.directories;
    std::unordered_map<std::string_view, size_t> numbers;
    for (size_t i = 0; i < rows.size(); ++i) {
      numbers.emplace(rows[i].key, i);
    }
    constexpr size_t kNone = SIZE_MAX;
    std::vector<size_t> parents(rows.size(), kNone);
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
    // Each row belongs to the walk that reaches it first. A walk that comes back to itself is a
    // cycle.
    std::vector<size_t> walks(rows.size(), kNone);
    for (size_t i = 0; i < rows.size(); ++i) {
      size_t at = i;
      while (at != kNone && walks[at] == kNone) {
        walks[at] = i;
        at = parents[at];
      }
      if (at != kNone && walks[at] == i && !IsSetOtherwise(parents, at)) {
        AddCycle(parents, at);
      }
    }
  }

  /// Returns whether the installer does not follow the cycle, because it knows one of its folders.
  bool IsSetOtherwise(const std::vector<size_t>& parents, size_t first) const {
    size_t at = first;
    do {
      if (!NeedsRow(m_module.directories[at].key)) {
        return true;
      }
      at = parents[at];
    } while (at != first);
    return false;
  }

  void AddCycle(const std::vector<size_t>& parents, size_t first) {
    if (!m_findings.Admit(kDirectoryCycle)) {
      return;
    }
    std::vector<std::string> keys;
    size_t at = first;
    do {
      keys.push_back(Shorten(m_module.directories[at].key));
      at = parents[at];
    } while (at != first);
    Finding& finding = m_findings.Add(
        kDirectoryCycle, {m_position},
        "directories of " + m_findings.NameOf(m_position) +
            " lie below one another, and the last one below the first: " + JoinSome(keys, ", "));
    finding.table = "Directory";
    finding.key = keys.front();
    for (size_t i = 0; i < std::min(keys.size(), FindingList::kMaxModules); ++i) {
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

  /// Adds a finding unless the directory, which has no row in the module, needs none.
  void CheckDirectory(const char* table, std::string_view row, const char* column,
                      std::string_view directory) {
    if (!NeedsRow(directory) || m_modules.HasRow("Directory", "Directory", directory) ||
        !m_findings.Admit(kMissingDirectory)) {
      return;
    }
    Finding& finding = m_findings.Add(kMissingDirectory, {m_position},
                                      "row " + Shorten(row) + " of table " + table + " in " +
                                          m_findings.NameOf(m_position) + " refers to directory " +
                                          QuoteShort(directory) + ", which has no row");
    finding.table = table;
    finding.key = Shorten(row);
    finding.values = {{m_position, column, Shorten(directory)}};
  }

  const CheckedModules& m_modules;
  size_t m_position;
  const Module& m_module;
  FindingList& m_findings;
};

}  // namespace

void CheckReferences(const CheckedModules& modules, FindingList& findings) {
  for (const size_t position : modules.Scope()) {
    const Module& module = modules.At(position);
    // A module that could not be read completely is not accused of lacking rows.
    if (module.tables && module.failure.empty()) {
      ReferenceCheck(modules, position, findings).Run();
    }
  }
}

}  // namespace qm::merge
