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
// - Rows of the Module...Sequence tables become rows of the sequence tables of the package, which a
//   module has only empty. An action with a number and no base action is a standard one, for which
//   the number of the package counts.
// - The package has the row of TARGETDIR, and files and media are numbered again.

enum class TableKind { Rows, Sequence, Directory, File, NotMerged };

/// The cells of a module that get their values from the user of the module (ModuleSubstitution).
class SubstitutedCells {
 public:
  explicit SubstitutedCells(const Table& substitutions);

  /// Returns whether a row, named by its key with semicolons between the cells, has such a cell.
  /// Not if the key has more than 4,096 bytes.
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
  Extended,  ///< one has more columns at its end, which may be null
  Different
};

ColumnRelation CompareColumns(const Table& a, const Table& b);

/// Tables of one name with the same columns.
struct ColumnGroup {
  const ModuleTable* first;
  const ModuleTable* other = nullptr;  ///< the first one of another ID, if there is one
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

/// Returns the hash of a cell, added to `hash`. Of data, only the size counts.
std::uint64_t HashCell(std::uint64_t hash, const Table& table, std::size_t row, std::size_t column);

/// Collects the merged tables of all modules and hashes the keys of their rows. Module by module,
/// since the texts of one are close together in memory; everything later looks only at rows that
/// meet others.
class MergedTables {
 public:
  /// Kinds of columns of one table that are told apart.
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
  void HashRows(const ModuleTable& owner, TableKind kind);

  const CheckedModules& m_modules;
  std::deque<ModuleTable> m_tables;  ///< does not move them
  std::deque<SubstitutedCells> m_substituted;
  std::unordered_map<std::string_view, std::size_t> m_numbers;
  std::vector<NamedTables> m_names;
  std::vector<HashedRow> m_rows;
};

}  // namespace qm::merge
