#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

#include "merge/Alternatives.h"
#include "merge/Checks.h"
#include "merge/Hashing.h"
#include "merge/JoinTexts.h"
#include "merge/MergedTables.h"

namespace qm::merge {

namespace {

/// Returns whether a table has only texts for display. Showing the text of another module is not an
/// error.
bool HasOnlyDisplayTexts(std::string_view table) noexcept {
  return table == "ActionText" || table == "Error" || table == "UIText";
}

/// Which part of binary data is compared.
enum class DataPart { Size, Content };

bool IsSameCell(const RowRef& a, const RowRef& b, size_t column, DataPart part) {
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
      return first.StreamSize(a.row, column) == second.StreamSize(b.row, column) &&
             (part == DataPart::Size ||
              first.StreamHash(a.row, column) == second.StreamHash(b.row, column));
  }
}

std::string FormatChecksum(std::uint64_t hash) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) {
    text += kDigits[hash >> static_cast<unsigned>(shift) & 0xFU];
  }
  return text;
}

std::string FormatCell(const RowRef& ref, size_t column, DataPart part) {
  const Table& table = *ref.owner->table;
  if (column >= table.Columns().size()) {
    return {};
  }
  std::string text = Shorten(table.Format(ref.row, column));
  if (const auto hash = table.StreamHash(ref.row, column); hash && part == DataPart::Content) {
    text += " with checksum " + FormatChecksum(*hash);
  }
  return text;
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

/// Compares the tables of one name: their columns, and their rows with the same key.
class TableCheck {
 public:
  /// The most rows of one table that are listed for a pair of modules. One more finding counts the
  /// others.
  static constexpr size_t kMaxRowsOfPair = 20;
  /// The most different values that are in one finding.
  static constexpr size_t kMaxVariants = 8;

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

  /// Compares the columns of all tables with the most frequent ones. Remembers which tables have
  /// rows that can be compared.
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
    // Additional columns do no harm if all their cells are null.
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
      const bool isNumbering = m_kind == TableKind::File && columns[i].name == "Sequence";
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
                       [&](size_t column) { return IsSameCell(a, b, column, DataPart::Size); });
  }

  bool HasSameValues(const RowRef& a, const RowRef& b) const {
    return std::all_of(m_valueColumns.begin(), m_valueColumns.end(),
                       [&](size_t column) { return IsSameCell(a, b, column, m_dataPart); });
  }

  std::uint64_t HashValues(const RowRef& ref) const {
    const Table& table = *ref.owner->table;
    std::uint64_t hash = kHashSeed;
    for (const size_t column : m_valueColumns) {
      if (column < table.Columns().size() && !table.IsNull(ref.row, column)) {
        hash = HashCell(HashNumber(hash, column), table, ref.row, column);
        if (m_dataPart == DataPart::Content) {
          hash = HashNumber(hash, table.StreamHash(ref.row, column).value_or(0));
        }
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
    m_dataPart = ChooseDataPart(rows);
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

  /// Returns what to compare of the data in these rows: the content only if it was read for all
  /// cells with data of the same size. It may not have been, because it is damaged or the file
  /// could not be opened again.
  DataPart ChooseDataPart(const std::vector<RowRef>& rows) const {
    // Counts of cells with data, by column and size: all, and those whose data was read.
    std::map<std::pair<size_t, std::uint64_t>, std::pair<size_t, size_t>> counts;
    for (const size_t column : m_valueColumns) {
      for (const RowRef& row : rows) {
        const Table& table = *row.owner->table;
        if (column >= table.Columns().size()) {
          continue;
        }
        if (const auto size = table.StreamSize(row.row, column)) {
          auto& [all, read] = counts[{column, *size}];
          ++all;
          read += table.StreamHash(row.row, column) ? 1 : 0;
        }
      }
    }
    const bool isRead = std::all_of(counts.begin(), counts.end(), [](const auto& entry) {
      const auto& [all, read] = entry.second;
      return all == 1 || read == all;
    });
    return isRead ? DataPart::Content : DataPart::Size;
  }

  /// Rows of one key with the same values.
  using Variant = std::vector<RowRef>;

  /// Adds a finding for rows of one key that differ, of modules of several IDs.
  void AddConflictOf(const std::vector<RowRef>& rows) {
    const std::vector<Variant> variants = GroupByValues(rows);
    if (variants.size() < 2) {
      return;  // alternatives agree, or the hashes of different values are equal
    }
    const std::vector<RowRef> sides = ChooseSides(variants);
    size_t& rowsOfPair = m_pairs[{sides[0].owner->module, sides[1].owner->module}];
    if (++rowsOfPair <= kMaxRowsOfPair && m_findings.Admit(kRowConflict)) {
      AddConflict(sides, FormatRest(variants, sides.size()));
    }
  }

  /// Groups rows by their values. In a catalog, takes only those of the alternatives that agree
  /// with the most others.
  std::vector<Variant> GroupByValues(const std::vector<RowRef>& rows) const {
    std::vector<ModuleVariant> hashes;
    hashes.reserve(rows.size());
    for (const RowRef& ref : rows) {
      hashes.push_back({ref.owner->module, HashValues(ref)});
    }
    const std::vector<bool> isCompared = ChooseAlternatives(m_modules, hashes);
    std::unordered_map<std::uint64_t, size_t> numbers;
    std::vector<Variant> variants;
    for (size_t i = 0; i < rows.size(); ++i) {
      if (!isCompared[i]) {
        continue;
      }
      const auto [number, isNew] = numbers.emplace(hashes[i].variant, variants.size());
      if (isNew) {
        variants.emplace_back();
      }
      variants[number->second].push_back(rows[i]);
    }
    return variants;
  }

  /// Returns rows of at most kMaxVariants variants: one of each, of modules of different IDs as far
  /// as possible, and after them the rows of other modules, up to kMaxModules in all.
  std::vector<RowRef> ChooseSides(const std::vector<Variant>& variants) const {
    std::vector<RowRef> sides;
    const auto isNew = [&](const RowRef& ref) {
      return std::none_of(sides.begin(), sides.end(), [&](const RowRef& side) {
        return m_modules.AreAlternatives(side.owner->module, ref.owner->module);
      });
    };
    std::vector<const Variant*> shown;
    std::vector<const Variant*> others;
    for (const Variant& variant : variants) {
      const auto found = shown.size() < kMaxVariants
                             ? std::find_if(variant.begin(), variant.end(), isNew)
                             : variant.end();
      if (found != variant.end()) {
        sides.push_back(*found);
      }
      (found != variant.end() ? shown : others).push_back(&variant);
    }
    if (sides.size() < 2) {
      // All rows of another ID have the values of the first side: begin with other values.
      sides = {variants[1].front()};
      sides.insert(sides.begin(), *std::find_if(variants[0].begin(), variants[0].end(), isNew));
    }
    shown.insert(shown.end(), others.begin(), others.end());
    shown.resize(std::min(shown.size(), kMaxVariants));
    for (const Variant* const variant : shown) {
      AddModules(*variant, sides);
    }
    return sides;
  }

  /// Adds the rows of modules that are not among the sides yet, up to kMaxModules sides.
  static void AddModules(const Variant& rows, std::vector<RowRef>& sides) {
    for (const RowRef& ref : rows) {
      if (sides.size() == FindingList::kMaxModules) {
        return;
      }
      if (std::none_of(sides.begin(), sides.end(), [&](const RowRef& side) {
            return side.owner->module == ref.owner->module;
          })) {
        sides.push_back(ref);
      }
    }
  }

  /// Describes what a finding with some sides leaves out; empty if it is complete.
  static std::string FormatRest(const std::vector<Variant>& variants, size_t sideCount) {
    if (variants.size() > std::min(sideCount, kMaxVariants)) {
      return "; it has " + std::to_string(variants.size()) + " different values in all";
    }
    std::set<size_t> modules;
    for (const Variant& variant : variants) {
      for (const RowRef& ref : variant) {
        modules.insert(ref.owner->module);
      }
    }
    return modules.size() > sideCount
               ? "; " + std::to_string(modules.size() - sideCount) + " more modules have the row"
               : "";
  }

  void AddConflict(const std::vector<RowRef>& sides, const std::string& rest) {
    std::vector<size_t> modules;
    modules.reserve(sides.size());
    for (const RowRef& side : sides) {
      modules.push_back(side.owner->module);
    }
    std::vector<std::string> texts;
    std::vector<FindingValue> values;
    bool isSubstituted = true;
    for (const size_t column : m_valueColumns) {
      if (std::all_of(sides.begin(), sides.end(), [&](const RowRef& side) {
            return IsSameCell(sides[0], side, column, m_dataPart);
          })) {
        continue;
      }
      const std::string name((*m_columns)[column].name);
      isSubstituted = isSubstituted && IsSubstituted(sides, column, name);
      for (const RowRef& side : sides) {
        values.push_back({side.owner->module, name, FormatCell(side, column, m_dataPart)});
      }
      texts.push_back(name + " is " + JoinCells(sides, column));
    }
    const std::string key = Shorten(JoinKey(sides[0], "/"));
    Finding& finding = m_findings.Add(kRowConflict, modules,
                                      "row " + key + " of table " + std::string(m_name) +
                                          " differs: " + JoinColumns(texts) + rest);
    finding.table = m_name;
    finding.key = key;
    finding.values = std::move(values);
    if (isSubstituted || HasOnlyDisplayTexts(m_name) || IsSameFolder(sides)) {
      LimitSeverity(finding, Severity::Warning);
    }
  }

  /// Returns the values of a column, each with the modules that have it.
  std::string JoinCells(const std::vector<RowRef>& sides, size_t column) const {
    std::vector<std::string> cells;
    std::vector<bool> isListed(sides.size());
    for (size_t i = 0; i < sides.size(); ++i) {
      if (isListed[i]) {
        continue;
      }
      std::vector<size_t> modules;
      for (size_t j = i; j < sides.size(); ++j) {
        if (IsSameCell(sides[i], sides[j], column, m_dataPart)) {
          isListed[j] = true;
          modules.push_back(sides[j].owner->module);
        }
      }
      cells.push_back('"' + FormatCell(sides[i], column, m_dataPart) + "\" in " +
                      m_findings.JoinNames(modules, " and "));
    }
    return JoinTexts(cells, " and ");
  }

  static std::string JoinColumns(std::vector<std::string> texts) {
    constexpr size_t kMaxColumns = 3;
    const size_t more = texts.size() - std::min(texts.size(), kMaxColumns);
    texts.resize(texts.size() - more);
    return JoinTexts(texts, ", ") +
           (more > 0 ? ", and so do " + std::to_string(more) + " more columns" : "");
  }

  /// Returns whether configurable items supply all values of a column that differ: the rows of the
  /// other modules agree.
  bool IsSubstituted(const std::vector<RowRef>& sides, size_t column,
                     const std::string& name) const {
    const RowRef* kept = nullptr;
    return std::all_of(sides.begin(), sides.end(), [&](const RowRef& side) {
      const ModuleTable& owner = *side.owner;
      if (owner.substituted &&
          owner.substituted->Has(owner.table->Name(), JoinKey(side, ";"), name)) {
        return true;
      }
      kept = kept ? kept : &side;
      return IsSameCell(*kept, side, column, m_dataPart);
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
  DataPart m_dataPart = DataPart::Size;                 ///< for the rows being compared
  std::map<std::pair<size_t, size_t>, size_t> m_pairs;  ///< colliding rows of two modules
};

}  // namespace

void CheckRows(const CheckedModules& modules, FindingList& findings) {
  MergedTables tables(modules);
  for (const size_t position : modules.Scope()) {
    tables.Add(position);
  }
  TableCheck check(modules, findings);
  for (const NamedTables& named : tables.Finish()) {
    if (named.tables.size() > 1) {
      check.Run(named);
    }
  }
}

}  // namespace qm::merge
