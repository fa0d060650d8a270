#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <utility>

#include "merge/Checks.h"
#include "merge/MergedCycles.h"
#include "merge/ParentCycles.h"

namespace qm::merge {

namespace {

constexpr const char* kSequenceTables[] = {
    "ModuleAdminExecuteSequence",   "ModuleAdminUISequence",   "ModuleAdvtExecuteSequence",
    "ModuleInstallExecuteSequence", "ModuleInstallUISequence",
};

/// Returns whether an action is one of the installer's own, which packages have in their sequences.
bool IsStandardAction(std::string_view name) noexcept {
  static constexpr std::string_view kNames[] = {
      "AllocateRegistrySpace",
      "AppSearch",
      "BindImage",
      "CCPSearch",
      "CostFinalize",
      "CostInitialize",
      "CreateFolders",
      "CreateShortcuts",
      "DeleteServices",
      "DisableRollback",
      "DuplicateFiles",
      "ExecuteAction",
      "FileCost",
      "FindRelatedProducts",
      "ForceReboot",
      "InstallAdminPackage",
      "InstallExecute",
      "InstallExecuteAgain",
      "InstallFiles",
      "InstallFinalize",
      "InstallInitialize",
      "InstallODBC",
      "InstallSFPCatalogFile",
      "InstallServices",
      "InstallValidate",
      "IsolateComponents",
      "LaunchConditions",
      "MigrateFeatureStates",
      "MoveFiles",
      "MsiConfigureServices",
      "MsiPublishAssemblies",
      "MsiUnpublishAssemblies",
      "PatchFiles",
      "ProcessComponents",
      "PublishComponents",
      "PublishFeatures",
      "PublishProduct",
      "RMCCPSearch",
      "RegisterClassInfo",
      "RegisterComPlus",
      "RegisterExtensionInfo",
      "RegisterFonts",
      "RegisterMIMEInfo",
      "RegisterProduct",
      "RegisterProgIdInfo",
      "RegisterTypeLibraries",
      "RegisterUser",
      "RemoveDuplicateFiles",
      "RemoveEnvironmentStrings",
      "RemoveExistingProducts",
      "RemoveFiles",
      "RemoveFolders",
      "RemoveIniValues",
      "RemoveODBC",
      "RemoveRegistryValues",
      "RemoveShortcuts",
      "ResolveSource",
      "ScheduleReboot",
      "SelfRegModules",
      "SelfUnregModules",
      "SetODBCFolders",
      "StartServices",
      "StopServices",
      "UnpublishComponents",
      "UnpublishFeatures",
      "UnregisterClassInfo",
      "UnregisterComPlus",
      "UnregisterExtensionInfo",
      "UnregisterFonts",
      "UnregisterMIMEInfo",
      "UnregisterProgIdInfo",
      "UnregisterTypeLibraries",
      "ValidateProductID",
      "WriteEnvironmentStrings",
      "WriteIniValues",
      "WriteRegistryValues",
  };
  return std::binary_search(std::begin(kNames), std::end(kNames), name);
}

/// Checks where the actions of one table of a module are placed: by a number, or before or after a
/// base action. That may be an action of the same table, of another module, or of the package.
class SequenceCheck {
 public:
  SequenceCheck(const CheckedModules& modules, size_t position, const Table& table,
                FindingList& findings)
      : m_modules(modules), m_position(position), m_table(table), m_findings(findings) {}

  void Run() {
    const auto action = m_table.FindColumn("Action");
    const auto number = m_table.FindColumn("Sequence");
    const auto base = m_table.FindColumn("BaseAction");
    if (!action || !number || !base) {
      return;
    }
    m_action = *action;
    m_base = *base;
    std::vector<size_t> parents(m_table.RowCount(), kNoParent);
    for (size_t row = 0; row < parents.size(); ++row) {
      if (!m_table.IsNull(row, *number)) {
        continue;
      }
      if (m_table.IsNull(row, m_base)) {
        AddUnplaced(row);
      } else if (const auto parent = FindRow(m_table.TextNumber(row, m_base))) {
        parents[row] = *parent;
      } else {
        CheckBaseAction(row);
      }
    }
    for (const std::vector<size_t>& cycle : FindParentCycles(parents)) {
      AddCycle(cycle);
    }
  }

 private:
  std::string NameOf(size_t row) const { return Shorten(m_table.Text(row, m_action)); }

  /// Returns the row of an action, by the number of its name.
  std::optional<size_t> FindRow(std::uint32_t name) {
    if (m_rows.empty()) {
      m_rows.reserve(m_table.RowCount());
      for (size_t row = 0; row < m_table.RowCount(); ++row) {
        m_rows.emplace_back(m_table.TextNumber(row, m_action), row);
      }
      std::sort(m_rows.begin(), m_rows.end());
    }
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), std::pair(name, size_t{0}));
    return found == m_rows.end() || found->first != name ? std::nullopt
                                                         : std::optional(found->second);
  }

  /// Adds a finding if no module of the check has the base action of a row, and it is not a
  /// standard one.
  void CheckBaseAction(size_t row) {
    const std::string_view base = m_table.Text(row, m_base);
    const auto [known, isNew] = m_isBaseKnown.try_emplace(m_table.TextNumber(row, m_base));
    if (isNew) {
      known->second = IsStandardAction(base) || m_modules.HasRow(m_table.Name(), "Action", base);
    }
    if (known->second || !m_findings.Admit(kUnplacedAction)) {
      return;
    }
    LimitSeverity(Add(row, m_findings.NameOf(m_position) + " places " + NameOf(row) +
                               " beside action " + QuoteShort(base) +
                               ", which the package must have in its sequence: neither a checked "
                               "module nor the installer has it"),
                  Severity::Warning);
  }

  void AddUnplaced(size_t row) {
    if (m_findings.Admit(kUnplacedAction)) {
      Add(row, m_findings.NameOf(m_position) + " gives " + NameOf(row) +
                   " neither a number nor a base action in table " + std::string(m_table.Name()));
    }
  }

  void AddCycle(const std::vector<size_t>& cycle) {
    if (!m_findings.Admit(kUnplacedAction)) {
      return;
    }
    std::vector<std::string> names;
    names.reserve(cycle.size());
    for (const size_t row : cycle) {
      names.push_back(NameOf(row));
    }
    Finding& finding = Add(
        cycle.front(),
        m_findings.NameOf(m_position) + " places actions of table " + std::string(m_table.Name()) +
            " beside one another, and the last one beside the first: " + JoinSome(names, ", "));
    const size_t count = std::min(cycle.size(), FindingList::kMaxModules);
    for (size_t i = 1; i < count; ++i) {
      finding.values.push_back({m_position, "BaseAction", Shorten(m_table.Text(cycle[i], m_base))});
    }
  }

  Finding& Add(size_t row, std::string text) {
    return m_findings.AddForCell(kUnplacedAction,
                                 {m_position, m_table.Name(), m_table.Text(row, m_action),
                                  "BaseAction", m_table.Text(row, m_base)},
                                 std::move(text));
  }

  const CheckedModules& m_modules;
  size_t m_position;
  const Table& m_table;
  FindingList& m_findings;
  size_t m_action = 0;
  size_t m_base = 0;
  std::vector<std::pair<std::uint32_t, size_t>> m_rows;   ///< by the number of the name
  std::unordered_map<std::uint32_t, bool> m_isBaseKnown;  ///< by the number of the base action
};

/// Returns a table of a module; null if it has none or not all of its tables could be read.
const Table* FindWholeTable(const Module& module, const char* name) noexcept {
  // Actions that seem to be missing may be in rows that could not be read.
  return module.failure.empty() ? module.FindTable(name) : nullptr;
}

/// Appends the actions of a table. Leaves out names that are too long for a key, because rows that
/// share a long one would hash it repeatedly.
void AddActions(size_t position, const Table& table, std::vector<LinkedRow>& rows) {
  const auto action = table.FindColumn("Action");
  const auto number = table.FindColumn("Sequence");
  const auto base = table.FindColumn("BaseAction");
  for (size_t row = 0; action && number && base && row < table.RowCount(); ++row) {
    const std::string_view name = table.Text(row, *action);
    const std::string_view parent =
        table.IsNull(row, *number) ? table.Text(row, *base) : std::string_view();
    if (name.size() <= kMaxKeySize && parent.size() <= kMaxKeySize) {
      rows.push_back({position, name, parent});
    }
  }
}

/// Finds circles of actions that only the merge closes.
void CheckMergedSequence(const CheckedModules& modules, const char* name, FindingList& findings) {
  std::vector<LinkedRow> rows;
  for (const size_t position : modules.Scope()) {
    if (const Table* const table = FindWholeTable(modules.At(position), name)) {
      AddActions(position, *table, rows);
    }
  }
  AddMergedCycles(rows,
                  {kUnplacedAction, name, "BaseAction",
                   "once merged, actions are placed beside one another, and the last one beside "
                   "the first: "},
                  findings);
}

}  // namespace

void CheckSequences(const CheckedModules& modules, FindingList& findings) {
  for (const char* const name : kSequenceTables) {
    for (const size_t position : modules.Scope()) {
      if (const Table* const table = FindWholeTable(modules.At(position), name)) {
        SequenceCheck(modules, position, *table, findings).Run();
      }
    }
    if (modules.IsMerge()) {
      CheckMergedSequence(modules, name, findings);
    }
  }
}

}  // namespace qm::merge
