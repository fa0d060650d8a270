#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "merge/Checks.h"
#include "merge/ModuleTables.h"

namespace qm::merge {

// A merge copies the rows of a module's tables into the package. Some tables have rules of their
// own:
//
// - ModuleSignature, ModuleDependency and ModuleExclusion are copied like others, so that modules
//   which carry one module in two versions collide.
// - ModuleIgnoreTable, ModuleConfiguration and ModuleSubstitution direct the merge and are not
//   copied. Neither are _Validation and the tables that a ModuleIgnoreTable names.
// - Rows of the Module...Sequence tables become rows of the sequence tables of the package, which
//   are empty in a module. Standard actions keep the number that the package has for them. An
//   action is a standard one if it has no base action, and no module has it as a custom action or a
//   dialog.
// - The package has the row of TARGETDIR, and files and media are numbered again.

enum class TableKind { Rows, Sequence, Directory, File, NotMerged };

/// The cells of a module whose values the user of the module supplies (ModuleSubstitution).
class SubstitutedCells {
 public:
  explicit SubstitutedCells(const Table& substitutions);

  /// Returns whether `column` of a row is such a cell. `key` is the primary key of the row, with
  /// semicolons between its cells. Always false for a key of more than 4,096 bytes.
  bool Has(std::string_view table, std::string_view key, std::string_view column) const;

 private:
  std::unordered_set<std::uint64_t> m_cells;  ///< hashes: a text may be long, and in many rows
};

/// A table of a module.
struct ModuleTable {
  size_t module;
  const Table* table;
  const SubstitutedCells* substituted;  ///< null if the module has none
  size_t name;                          ///< position in the result of MergedTables::Finish
  size_t group = SIZE_MAX;  ///< position in NamedTables::groups; SIZE_MAX if there are too many
};

struct RowRef {
  const ModuleTable* owner;
  std::uint32_t row;
};

/// How the columns of two tables of one name relate.
enum class ColumnRelation {
  Same,
  Extended,  ///< one has additional nullable columns at its end
  Different
};

ColumnRelation CompareColumns(const Table& a, const Table& b);

/// Tables of one name with the same columns.
struct ColumnGroup {
  const ModuleTable* first;
  const ModuleTable* other = nullptr;  ///< the first one of a module with another ID; null if none
  size_t count = 1;
};

/// The tables of one name, and their rows whose keys have the same hash.
struct NamedTables {
  std::string_view name;
  TableKind kind;
  std::vector<const ModuleTable*> tables = {};
  std::vector<ColumnGroup> groups = {};
  std::vector<std::vector<RowRef>> rowsOfKeys = {};
};

/// Returns `hash` combined with a cell. Of binary data, only the size is hashed.
std::uint64_t HashCell(std::uint64_t hash, const Table& table, std::size_t row, std::size_t column);

/// Collects the merged tables of all modules and hashes the keys of their rows. Works module by
/// module, because the texts of one module are close together in memory. Everything after that
/// looks only at rows whose keys have the same hash.
class MergedTables {
 public:
  /// The most sets of columns of one table that are distinguished.
  static constexpr std::size_t kMaxGroups = 8;

  explicit MergedTables(const CheckedModules& modules) : m_modules(modules) {}

  void Add(std::size_t position);

  /// Returns the names with the rows that may collide.
  const std::vector<NamedTables>& Finish();

 private:
  struct HashedRow {
    std::uint64_t hash;  ///< of the name of the table and the key
    RowRef ref;
  };

  std::size_t AddToGroup(const ModuleTable& table, std::vector<ColumnGroup>& groups) const;
  bool IsOfPackage(const Table& table, TableKind kind, std::uint32_t row) const;
  void HashRows(const ModuleTable& owner, TableKind kind);

  const CheckedModules& m_modules;
  std::deque<ModuleTable> m_tables;  ///< a deque, because pointers to its elements are kept
  std::deque<SubstitutedCells> m_substituted;
  std::unordered_map<std::string_view, std::size_t> m_numbers;
  std::vector<NamedTables> m_names;
  std::vector<HashedRow> m_rows;
};

}  // namespace qm::merge
