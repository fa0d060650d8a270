#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "merge/FindingList.h"
#include "merge/Findings.h"

namespace qm::merge {

/// Longer keys, in bytes, name nothing.
inline constexpr size_t kMaxKeySize = 1024;

/// The modules of a check, with facts that several checks need.
class CheckedModules {
 public:
  CheckedModules(const ModuleIndex& set, const std::vector<size_t>& scope,
                 const CheckOptions& options);

  const ModuleIndex& Set() const noexcept { return m_set; }
  const std::vector<size_t>& Scope() const noexcept { return m_scope; }
  bool IsInScope(size_t position) const noexcept { return m_isInScope[position]; }
  bool IsMerge() const noexcept { return m_options.checkedAs == CheckedAs::Merge; }
  const Module& At(size_t position) const noexcept { return m_set.Modules()[position]; }

  /// Returns whether two modules have the same ID, so that only one of them is merged.
  bool AreAlternatives(size_t a, size_t b) const noexcept {
    return m_identities[a] == m_identities[b];
  }

  /// Returns a number that alternatives share.
  size_t IdentityOf(size_t position) const noexcept { return m_identities[position]; }

  TargetFolder Resolve(size_t module, std::string_view directory) const;
  std::string Spell(const TargetFolder& folder) const;

  /// Returns whether any module of the scope has a row of `table` with this key in `column`, the
  /// only primary key column. Keys of more than 1,024 bytes are never found.
  bool HasRow(std::string_view table, const char* column, std::string_view key) const;

 private:
  const ModuleIndex& m_set;
  const std::vector<size_t>& m_scope;
  const CheckOptions& m_options;
  std::vector<bool> m_isInScope;
  std::vector<size_t> m_identities;
  /// Used if CheckOptions::resolve is not set.
  mutable std::unordered_map<size_t, TargetFolders> m_folders;
  /// Sorted keys by table. The names of tables are literals or belong to modules.
  mutable std::unordered_map<std::string_view, std::vector<std::string_view>> m_keys;
};

/// Returns a text that is the same for all spellings of a folder: case-folded, without ".", with
/// one kind of separator, and with a predefined folder below another one replaced by its own
/// property. Returns nothing if it is not known where the folder is.
std::optional<std::string> NormalizeFolder(const TargetFolder& folder);

// Each check adds what it finds to a list.

/// Each module by itself: unreadable, changed, to be downloaded, versions and languages.
void CheckModuleFacts(const CheckedModules& modules, FindingList& findings);
/// Modules of the same ID, key or package code; in a merge, also those for different 64-bit
/// platforms.
void CheckIdentities(const CheckedModules& modules, FindingList& findings);
/// Requirements: missing ones, cycles and platforms.
void CheckRequirements(const CheckedModules& modules, FindingList& findings);
void CheckExclusions(const CheckedModules& modules, FindingList& findings);
/// Rows and columns of tables that several modules have.
void CheckRows(const CheckedModules& modules, FindingList& findings);
/// Files and their names in folders.
void CheckFiles(const CheckedModules& modules, FindingList& findings);
/// Identifiers of components.
void CheckComponents(const CheckedModules& modules, FindingList& findings);
/// References of rows to files, components, directories and configurable items.
void CheckReferences(const CheckedModules& modules, FindingList& findings);

/// Actions and their places in sequences.
void CheckSequences(const CheckedModules& modules, FindingList& findings);

/// Lowers the severity of a finding. Never raises it.
void LimitSeverity(Finding& finding, Severity severity) noexcept;

}  // namespace qm::merge
