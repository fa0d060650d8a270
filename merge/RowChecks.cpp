#include <algorithm>
#include <deque>
#include <map>
#include <unordered_map>

#include "merge/Checks.h"
#include "merge/Hashing.h"
#include "merge/JoinTexts.h"

namespace qm::merge {

namespace {

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

TableKind GetKind(std::string_view name) noexcept {
  static constexpr std::string_view kNotMerged[] = {
      "AdminExecuteSequence", "AdminUISequence",        "AdvtExecuteSequence", "AdvtUISequence",
      "FeatureComponents",    "InstallExecuteSequence", "InstallUISequence",   "Media",
      "ModuleComponents",     "ModuleConfiguration",    "ModuleIgnoreTable",   "ModuleSubstitution",
      "_Validation"};
  constexpr std::string_view kSequence = "Sequence";
  if (std::binary_search(std::begin(kNotMerged), std::end(kNotMerged), name)) {
    return TableKind::NotMerged;
  }
  if (name == "Directory") {
    return TableKind::Directory;
  }
  if (name == "File") {
    return TableKind::File;
  }
  return name.size() > kSequence.size() && name.substr(0, 6) == "Module" &&
                 name.substr(name.size() - kSequence.size()) == kSequence
             ? TableKind::Sequence
             : TableKind::Rows;
}

/// Whether the rows of a table are only texts that are shown. Which of them is shown is no failure.
bool HasOnlyDisplayTexts(std::string_view table) noexcept {
  return table == "ActionText" || table == "Error" || table == "UIText";
}

/// A table of a module.
struct ModuleTable {
  size_t module;
  const Table* table;
  const Table* substitutions;  ///< ModuleSubstitution of the module; null if it has none
  size_t name;                 ///< position in TableCollector::Names()
  size_t group = SIZE_MAX;     ///< position in NamedTables::groups; SIZE_MAX if there are too many
};

struct RowRef {
  const ModuleTable* owner;
  std::uint32_t row;
};

std::uint64_t HashCell(std::uint64_t hash, const Table& table, size_t row, size_t column) {
  switch (table.Columns()[column].kind) {
    case image::ColumnKind::Text:
      return HashText(hash, table.Text(row, column));
    case image::ColumnKind::Integer:
      return HashNumber(hash, static_cast<std::uint32_t>(table.Number(row, column).value_or(0)));
    default:
      return HashNumber(hash, table.StreamSize(row, column).value_or(0));
  }
}

bool IsSameCell(const RowRef& a, const RowRef& b, size_t column) {
  const Table& first = *a.owner->table;
  const Table& second = *b.owner->table;
  const auto isNull = [&](const Table& table, size_t row) {
    return column >= table.Columns().size() || table.IsNull(row, column);
  };
  if (isNull(first, a.row) || isNull(second, b.row)) {
    return isNull(first, a.row) == isNull(second, b.row);
  }
  switch (first.Columns()[column].kind) {
    case image::ColumnKind::Text:
      return first.Text(a.row, column) == second.Text(b.row, column);
    case image::ColumnKind::Integer:
      return first.Number(a.row, column) == second.Number(b.row, column);
    default:
      return first.StreamSize(a.row, column) == second.StreamSize(b.row, column);
  }
}

std::string FormatCell(const RowRef& ref, size_t column) {
  const Table& table = *ref.owner->table;
  return column < table.Columns().size() ? Shorten(table.Format(ref.row, column)) : std::string();
}

std::string JoinKey(const RowRef& ref, const char* between) {
  const Table& table = *ref.owner->table;
  std::vector<std::string> cells;
  for (size_t column = 0; column < table.Columns().size(); ++column) {
    if (table.Columns()[column].isKey) {
      cells.push_back(table.Format(ref.row, column));
    }
  }
  return JoinTexts(cells, between);
}

/// How the columns of two tables of one name relate.
enum class ColumnRelation {
  Same,
  Extended,  ///< one has more columns at its end, which may be null
  Different
};

ColumnRelation CompareColumns(const Table& a, const Table& b) {
  const std::vector<Column>& first = a.Columns();
  const std::vector<Column>& second = b.Columns();
  const size_t shared = std::min(first.size(), second.size());
  for (size_t i = 0; i < shared; ++i) {
    if (first[i].name != second[i].name || first[i].kind != second[i].kind ||
        first[i].isKey != second[i].isKey) {
      return ColumnRelation::Different;
    }
  }
  const std::vector<Column>& longer = first.size() > shared ? first : second;
  for (size_t i = shared; i < longer.size(); ++i) {
    if (longer[i].isKey || !longer[i].isNullable) {
      return ColumnRelation::Different;
    }
  }
  return longer.size() == shared ? ColumnRelation::Same : ColumnRelation::Extended;
}

std::string FormatColumns(const Table& table) {
  std::vector<std::string> names;
  for (const Column& column : table.Columns()) {
    const char* const kind = column.kind == image::ColumnKind::Text      ? ""
                             : column.kind == image::ColumnKind::Integer ? " (number)"
                                                                         : " (binary)";
    names.push_back(std::string(column.isKey ? "*" : "") + std::string(column.name) + kind);
  }
  return Shorten(JoinTexts(names, ", "));
}

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

/// Collects the merged tables of all modules and hashes the keys of their rows. Module by module,
/// since the texts of one are close together in memory; everything later looks only at rows that
/// meet others.
class TableCollector {
 public:
  /// Kinds of columns of one table that are told apart.
  static constexpr size_t kMaxGroups = 8;

  explicit TableCollector(const CheckedModules& modules) : m_modules(modules) {}

  void Add(size_t position) {
    const Module& module = m_modules.At(position);
    if (!module.tables) {
      return;
    }
    const std::vector<std::string_view> ignored = ReadIgnoredTables(module);
    const Table* const substitutions = module.FindTable("ModuleSubstitution");
    for (const Table& table : module.tables->All()) {
      if (table.RowCount() == 0) {
        continue;
      }
      const auto [found, isNew] = m_numbers.emplace(table.Name(), m_names.size());
      if (isNew) {
        m_names.push_back({table.Name(), GetKind(table.Name())});
      }
      NamedTables& named = m_names[found->second];
      if (named.kind != TableKind::NotMerged &&
          !std::binary_search(ignored.begin(), ignored.end(), table.Name())) {
        ModuleTable& added =
            m_tables.emplace_back(ModuleTable{position, &table, substitutions, found->second});
        added.group = AddToGroup(added, named.groups);
        named.tables.push_back(&added);
        HashRows(added, named.kind);
      }
    }
  }

  /// Returns the names with the rows that may collide.
  const std::vector<NamedTables>& Finish() {
    constexpr std::uint32_t kNone = UINT32_MAX;
    size_t slots = 16;
    while (slots < m_rows.size() * 2) {
      slots *= 2;
    }
    std::vector<std::uint32_t> first(slots, kNone);         // rows, by hash
    std::unordered_map<std::uint32_t, size_t> listOfFirst;  // of those that met another one
    for (std::uint32_t added = 0; added < m_rows.size(); ++added) {
      const HashedRow& row = m_rows[added];
      size_t slot = row.hash & (slots - 1);
      while (first[slot] != kNone && m_rows[first[slot]].hash != row.hash) {
        slot = (slot + 1) & (slots - 1);
      }
      if (first[slot] == kNone) {
        first[slot] = added;
        continue;
      }
      auto& lists = m_names[row.ref.owner->name].rowsOfKeys;
      const auto [list, isNew] = listOfFirst.emplace(first[slot], lists.size());
      if (isNew) {
        lists.push_back({m_rows[first[slot]].ref});
      }
      lists[list->second].push_back(row.ref);
    }
    return m_names;
  }

 private:
  struct HashedRow {
    std::uint64_t hash;  ///< of the name of the table and the key
    RowRef ref;
  };

  /// The tables that a module keeps out of a merge.
  static std::vector<std::string_view> ReadIgnoredTables(const Module& module) {
    std::vector<std::string_view> names;
    const Table* const table = module.FindTable("ModuleIgnoreTable");
    const auto column = table ? table->FindColumn("Table") : std::nullopt;
    for (size_t row = 0; column && row < table->RowCount(); ++row) {
      names.push_back(table->Text(row, *column));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  /// Returns the position of the group; SIZE_MAX if there are too many of them already.
  size_t AddToGroup(const ModuleTable& table, std::vector<ColumnGroup>& groups) const {
    for (ColumnGroup& group : groups) {
      if (CompareColumns(*group.first->table, *table.table) == ColumnRelation::Same) {
        ++group.count;
        if (!group.other && !m_modules.AreAlternatives(group.first->module, table.module)) {
          group.other = &table;
        }
        return static_cast<size_t>(&group - groups.data());
      }
    }
    if (groups.size() == kMaxGroups) {
      return SIZE_MAX;
    }
    groups.push_back({&table});
    return groups.size() - 1;
  }

  void HashRows(const ModuleTable& owner, TableKind kind) {
    const Table& table = *owner.table;
    const std::vector<Column>& columns = table.Columns();
    const auto baseAction =
        kind == TableKind::Sequence ? table.FindColumn("BaseAction") : std::nullopt;
    const auto directory =
        kind == TableKind::Directory ? table.FindColumn("Directory") : std::nullopt;
    const auto isKey = [](const Column& column) { return column.isKey; };
    const bool canDiffer = std::any_of(columns.begin(), columns.end(), isKey) &&
                           !std::all_of(columns.begin(), columns.end(), isKey);
    for (std::uint32_t row = 0; canDiffer && row < table.RowCount(); ++row) {
      if ((kind == TableKind::Sequence && (!baseAction || table.IsNull(row, *baseAction))) ||
          (directory && table.Text(row, *directory) == "TARGETDIR")) {
        continue;
      }
      std::uint64_t hash = HashNumber(kHashSeed, owner.name);
      for (size_t column = 0; column < columns.size(); ++column) {
        if (columns[column].isKey) {
          hash = HashCell(hash, table, row, column);
        }
      }
      m_rows.push_back({hash, {&owner, row}});
    }
  }

  const CheckedModules& m_modules;
  std::deque<ModuleTable> m_tables;  ///< does not move them
  std::unordered_map<std::string_view, size_t> m_numbers;
  std::vector<NamedTables> m_names;
  std::vector<HashedRow> m_rows;
};

/// Compares the tables of one name: their columns, and the rows whose keys met.
class TableCheck {
 public:
  /// Rows of one pair of modules and one table that are listed. One more finding counts the others.
  static constexpr size_t kMaxRowsOfPair = 20;
  /// Modules whose values stand side by side in one finding.
  static constexpr size_t kMaxSides = 8;

  TableCheck(const CheckedModules& modules, FindingList& findings)
      : m_modules(modules), m_findings(findings) {}

  void Run(const NamedTables& named) {
    m_name = named.name;
    m_kind = named.kind;
    m_pairs.clear();
    CompareColumnsOf(named);
    FindColumns(named);
    for (const std::vector<RowRef>& rows : named.rowsOfKeys) {
      CompareRowsOfKey(rows);
    }
    AddRest();
  }

 private:
  // ---- Columns

  /// Compares the columns of all tables with those that most have. Keeps the tables whose rows can
  /// be compared.
  void CompareColumnsOf(const NamedTables& named) {
    const std::vector<ColumnGroup>& groups = named.groups;
    const auto isSmaller = [](const ColumnGroup& a, const ColumnGroup& b) {
      return a.count < b.count;
    };
    const ColumnGroup& most = *std::max_element(groups.begin(), groups.end(), isSmaller);
    std::vector<ColumnRelation> relations;
    size_t fewest = most.first->table->Columns().size();
    m_isComparable.clear();
    for (const ColumnGroup& group : groups) {
      relations.push_back(CompareColumns(*most.first->table, *group.first->table));
      m_isComparable.push_back(relations.back() != ColumnRelation::Different);
      if (relations.back() == ColumnRelation::Extended) {
        fewest = std::min(fewest, group.first->table->Columns().size());
      }
    }
    // More columns do no harm as long as nothing is in them.
    const bool isExtended =
        std::count(relations.begin(), relations.end(), ColumnRelation::Extended) > 0 &&
        HasValuesFrom(named, fewest);
    std::vector<const ModuleTable*> sides{most.first};
    bool areCompatible = true;
    for (size_t i = 0; i < groups.size(); ++i) {
      const ModuleTable* const side =
          m_modules.AreAlternatives(groups[i].first->module, most.first->module) ? groups[i].other
                                                                                 : groups[i].first;
      if (side && (relations[i] == ColumnRelation::Different ||
                   (relations[i] == ColumnRelation::Extended && isExtended))) {
        areCompatible = areCompatible && relations[i] == ColumnRelation::Extended;
        sides.push_back(side);
      }
    }
    if (sides.size() > 1 && m_findings.Admit(kTableConflict)) {
      AddTableConflict(sides, areCompatible);
    }
  }

  bool IsComparable(const ModuleTable& table) const {
    return table.group < m_isComparable.size() && m_isComparable[table.group];
  }

  /// Returns whether a row of the comparable tables has a value in a column from this one on.
  bool HasValuesFrom(const NamedTables& named, size_t firstColumn) const {
    return std::any_of(named.tables.begin(), named.tables.end(), [&](const ModuleTable* owner) {
      const Table& table = *owner->table;
      for (size_t column = firstColumn; IsComparable(*owner) && column < table.Columns().size();
           ++column) {
        for (size_t row = 0; row < table.RowCount(); ++row) {
          if (!table.IsNull(row, column)) {
            return true;
          }
        }
      }
      return false;
    });
  }

  void AddTableConflict(const std::vector<const ModuleTable*>& sides, bool areCompatible) {
    std::vector<size_t> modules;
    std::vector<std::string> texts;
    std::vector<FindingValue> values;
    for (const ModuleTable* const table : sides) {
      modules.push_back(table->module);
      values.push_back({table->module, "Columns", FormatColumns(*table->table)});
      texts.push_back(m_findings.NameOf(table->module) + " has " + values.back().value);
    }
    Finding& finding = m_findings.Add(
        kTableConflict, modules,
        "the columns of table " + std::string(m_name) + " differ: " + JoinTexts(texts, ", and "));
    finding.table = m_name;
    finding.values = std::move(values);
    if (areCompatible) {
      LimitSeverity(finding, Severity::Warning);
    }
  }

  // ---- Rows

  void FindColumns(const NamedTables& named) {
    const Table* widest = nullptr;
    for (size_t i = 0; i < named.groups.size(); ++i) {
      const Table& table = *named.groups[i].first->table;
      if (m_isComparable[i] && (!widest || table.Columns().size() > widest->Columns().size())) {
        widest = &table;
      }
    }
    m_keyColumns.clear();
    m_valueColumns.clear();
    const std::vector<Column>& columns = widest->Columns();
    for (size_t i = 0; i < columns.size(); ++i) {
      const bool isNumbering = (m_kind == TableKind::File || m_kind == TableKind::Sequence) &&
                               columns[i].name == "Sequence";
      if (columns[i].isKey) {
        m_keyColumns.push_back(i);
      } else if (!isNumbering) {
        m_valueColumns.push_back(i);
      }
    }
    m_columns = &columns;
  }

  bool IsSameKey(const RowRef& a, const RowRef& b) const {
    return std::all_of(m_keyColumns.begin(), m_keyColumns.end(),
                       [&](size_t column) { return IsSameCell(a, b, column); });
  }

  bool HasSameValues(const RowRef& a, const RowRef& b) const {
    return std::all_of(m_valueColumns.begin(), m_valueColumns.end(),
                       [&](size_t column) { return IsSameCell(a, b, column); });
  }

  std::uint64_t HashValues(const RowRef& ref) const {
    const Table& table = *ref.owner->table;
    std::uint64_t hash = kHashSeed;
    for (const size_t column : m_valueColumns) {
      if (column < table.Columns().size() && !table.IsNull(ref.row, column)) {
        hash = HashCell(HashNumber(hash, column), table, ref.row, column);
      }
    }
    return hash;
  }

  /// Compares rows whose keys have the same hash.
  void CompareRowsOfKey(const std::vector<RowRef>& candidates) {
    std::vector<RowRef> rows;
    for (const RowRef& ref : candidates) {
      if (IsComparable(*ref.owner) && (rows.empty() || IsSameKey(rows.front(), ref))) {
        rows.push_back(ref);
      }
    }
    bool differs = false;
    bool areAlternatives = true;
    for (const RowRef& row : rows) {
      areAlternatives = areAlternatives &&
                        m_modules.AreAlternatives(rows.front().owner->module, row.owner->module);
      differs = differs || !HasSameValues(rows.front(), row);
    }
    if (differs && !areAlternatives) {
      AddConflictOf(rows);
    }
  }

  /// Adds a finding for rows of modules of several IDs, which have several variants.
  void AddConflictOf(const std::vector<RowRef>& rows) {
    // Modules that exist in alternatives do not collide if some choice of them agrees.
    std::map<std::uint64_t, std::vector<RowRef>> variants;
    std::vector<std::uint64_t> order;
    std::vector<size_t> identities;
    for (const RowRef& ref : rows) {
      const std::uint64_t hash = HashValues(ref);
      std::vector<RowRef>& variant = variants[hash];
      if (variant.empty()) {
        order.push_back(hash);
      }
      variant.push_back(ref);
      identities.push_back(m_modules.IdentityOf(ref.owner->module));
    }
    const size_t identityCount = CountDistinct(std::move(identities));
    for (const auto& [hash, refs] : variants) {
      std::vector<size_t> agreeing;
      for (const RowRef& ref : refs) {
        agreeing.push_back(m_modules.IdentityOf(ref.owner->module));
      }
      if (!m_modules.IsMerge() && CountDistinct(std::move(agreeing)) == identityCount) {
        return;
      }
    }
    AddConflict(ChooseSides(variants, order), order.size());
  }

  static size_t CountDistinct(std::vector<size_t> values) {
    std::sort(values.begin(), values.end());
    return static_cast<size_t>(std::unique(values.begin(), values.end()) - values.begin());
  }

  /// Returns a row of each variant, of modules of different IDs as far as possible.
  std::vector<RowRef> ChooseSides(const std::map<std::uint64_t, std::vector<RowRef>>& variants,
                                  const std::vector<std::uint64_t>& order) const {
    std::vector<RowRef> sides;
    const auto isNew = [&](const RowRef& ref) {
      return std::none_of(sides.begin(), sides.end(), [&](const RowRef& side) {
        return m_modules.AreAlternatives(side.owner->module, ref.owner->module);
      });
    };
    for (const std::uint64_t hash : order) {
      if (sides.size() == kMaxSides) {
        break;
      }
      const std::vector<RowRef>& refs = variants.at(hash);
      const auto found = std::find_if(refs.begin(), refs.end(), isNew);
      if (found != refs.end()) {
        sides.push_back(*found);
      }
    }
    if (sides.size() < 2) {
      // The first variant took the only module of another ID: begin with a later one.
      sides = {variants.at(order[1]).front()};
      const std::vector<RowRef>& refs = variants.at(order[0]);
      sides.insert(sides.begin(), *std::find_if(refs.begin(), refs.end(), isNew));
    }
    return sides;
  }

  void AddConflict(const std::vector<RowRef>& sides, size_t variantCount) {
    size_t& rowsOfPair = m_pairs[{sides[0].owner->module, sides[1].owner->module}];
    if (++rowsOfPair > kMaxRowsOfPair || !m_findings.Admit(kRowConflict)) {
      return;
    }
    std::vector<size_t> modules;
    modules.reserve(sides.size());
    for (const RowRef& side : sides) {
      modules.push_back(side.owner->module);
    }
    std::vector<std::string> texts;
    std::vector<FindingValue> values;
    bool isSubstituted = true;
    for (const size_t column : m_valueColumns) {
      if (std::all_of(sides.begin(), sides.end(),
                      [&](const RowRef& side) { return IsSameCell(sides[0], side, column); })) {
        continue;
      }
      const std::string name((*m_columns)[column].name);
      isSubstituted = isSubstituted && IsSubstituted(sides, name);
      std::vector<std::string> cells;
      for (const RowRef& side : sides) {
        values.push_back({side.owner->module, name, FormatCell(side, column)});
        cells.push_back('"' + values.back().value + "\" in " +
                        m_findings.NameOf(side.owner->module));
      }
      texts.push_back(name + " is " + JoinTexts(cells, " and "));
    }
    const std::string key = Shorten(JoinKey(sides[0], "/"));
    Finding& finding = m_findings.Add(
        kRowConflict, modules,
        "row " + key + " of table " + std::string(m_name) + " differs: " + JoinColumns(texts) +
            (variantCount > sides.size()
                 ? "; it has " + std::to_string(variantCount) + " different values in all"
                 : ""));
    finding.table = m_name;
    finding.key = key;
    finding.values = std::move(values);
    if (isSubstituted || HasOnlyDisplayTexts(m_name) || IsSameFolder(sides)) {
      LimitSeverity(finding, Severity::Warning);
    }
  }

  static std::string JoinColumns(std::vector<std::string> texts) {
    constexpr size_t kMaxColumns = 3;
    const size_t more = texts.size() - std::min(texts.size(), kMaxColumns);
    texts.resize(texts.size() - more);
    return JoinTexts(texts, ", ") +
           (more > 0 ? ", and so do " + std::to_string(more) + " more columns" : "");
  }

  /// Returns whether the user of the modules gives the value of a column: a configurable item
  /// replaces it.
  static bool IsSubstituted(const std::vector<RowRef>& sides, const std::string& column) {
    return std::any_of(sides.begin(), sides.end(), [&](const RowRef& side) {
      const Table* const items = side.owner->substitutions;
      if (!items) {
        return false;
      }
      const auto table = items->FindColumn("Table");
      const auto row = items->FindColumn("Row");
      const auto name = items->FindColumn("Column");
      const std::string key = JoinKey(side, ";");
      for (size_t item = 0; table && row && name && item < items->RowCount(); ++item) {
        if (items->Text(item, *table) == side.owner->table->Name() &&
            items->Text(item, *row) == key && items->Text(item, *name) == column) {
          return true;
        }
      }
      return false;
    });
  }

  /// Returns whether rows of the Directory table mean the same folder, so that it does not matter
  /// which of them is merged.
  bool IsSameFolder(const std::vector<RowRef>& sides) const {
    if (m_kind != TableKind::Directory) {
      return false;
    }
    const auto folderOf = [&](const RowRef& side) {
      return NormalizeFolder(m_modules.Resolve(
          side.owner->module, side.owner->table->Text(side.row, m_keyColumns.front())));
    };
    const std::optional<std::string> first = folderOf(sides[0]);
    return first && std::all_of(sides.begin(), sides.end(),
                                [&](const RowRef& side) { return folderOf(side) == first; });
  }

  /// Adds one finding for each pair of modules with more rows than are listed.
  void AddRest() {
    for (const auto& [pair, count] : m_pairs) {
      if (count > kMaxRowsOfPair && m_findings.Admit(kRowConflict)) {
        Finding& finding = m_findings.Add(kRowConflict, {pair.first, pair.second},
                                          std::to_string(count - kMaxRowsOfPair) +
                                              " more rows of table " + std::string(m_name) +
                                              " differ between " + m_findings.NameOf(pair.first) +
                                              " and " + m_findings.NameOf(pair.second));
        finding.table = m_name;
      }
    }
  }

  const CheckedModules& m_modules;
  FindingList& m_findings;
  std::string_view m_name;
  TableKind m_kind = TableKind::Rows;
  std::vector<bool> m_isComparable;  ///< by group of columns
  const std::vector<Column>* m_columns = nullptr;
  std::vector<size_t> m_keyColumns;
  std::vector<size_t> m_valueColumns;
  std::map<std::pair<size_t, size_t>, size_t> m_pairs;  ///< colliding rows of two modules
};

}  // namespace

void CheckRows(const CheckedModules& modules, FindingList& findings) {
  TableCollector collector(modules);
  for (const size_t position : modules.Scope()) {
    collector.Add(position);
  }
  TableCheck check(modules, findings);
  for (const NamedTables& named : collector.Finish()) {
    if (named.tables.size() > 1) {
      check.Run(named);
    }
  }
}

}  // namespace qm::merge
