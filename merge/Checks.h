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

/// The modules of a check, with what several checks want to know about them.
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

  /// A number that alternatives share.
  size_t IdentityOf(size_t position) const noexcept { return m_identities[position]; }

  TargetFolder Resolve(size_t module, std::string_view directory) const;
  std::string Spell(const TargetFolder& folder) const;

  /// Returns whether a module of the scope has a row with this key, which is the only primary key
  /// column, in a table.
  bool HasRow(std::string_view table, const char* column, std::string_view key) const;

 private:
  const ModuleIndex& m_set;
  const std::vector<size_t>& m_scope;
  const CheckOptions& m_options;
  std::vector<bool> m_isInScope;
  std::vector<size_t> m_identities;
  mutable std::unordered_map<size_t, TargetFolders> m_folders;  ///< where no options resolve
  /// By table, whose names are literals or those of modules.
  mutable std::unordered_map<std::string_view, std::vector<std::string_view>> m_keys;
};

/// Returns a text that equal folders share, however they are spelled: folded, without ".", with one
/// kind of separator, and with predefined folders below others as folders of their own. Nothing if
/// it is not known where the folder is.
std::optional<std::string> NormalizeFolder(const TargetFolder& folder);

// Each adds what it finds to a list.

/// Modules for themselves: unreadable, changed, to be downloaded, versions and languages.
void CheckModuleFacts(const CheckedModules& modules, FindingList& findings);
/// Modules of the same ID, key or package code.
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
/// Rows of files, components and directories that rows of a module refer to.
void CheckReferences(const CheckedModules& modules, FindingList& findings);

/// Actions and their places in sequences.
void CheckSequences(const CheckedModules& modules, FindingList& findings);

/// Lowers the severity of a finding. Never raises it.
void LimitSeverity(Finding& finding, Severity severity) noexcept;

}  // namespace qm::merge
