#include "merge/MergedTables.h"

#include <algorithm>
#include <iterator>

#include "merge/Hashing.h"

namespace qm::merge {

namespace {

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

/// The tables that a module keeps out of a merge.
std::vector<std::string_view> ReadIgnoredTables(const Module& module) {
  std::vector<std::string_view> names;
  const Table* const table = module.FindTable("ModuleIgnoreTable");
  const auto column = table ? table->FindColumn("Table") : std::nullopt;
  for (size_t row = 0; column && row < table->RowCount(); ++row) {
    names.push_back(table->Text(row, *column));
  }
  std::sort(names.begin(), names.end());
  return names;
}

constexpr size_t kMaxRowKeySize = 4096;

std::uint64_t HashName(std::string_view table, std::string_view key,
                       std::string_view column) noexcept {
  return HashText(HashText(HashText(kHashSeed, table), column), key);
}

}  // namespace

SubstitutedCells::SubstitutedCells(const Table& substitutions) {
  const auto table = substitutions.FindColumn("Table");
  const auto row = substitutions.FindColumn("Row");
  const auto column = substitutions.FindColumn("Column");
  for (size_t item = 0; table && row && column && item < substitutions.RowCount(); ++item) {
    const std::string_view names[] = {substitutions.Text(item, *table),
                                      substitutions.Text(item, *row),
                                      substitutions.Text(item, *column)};
    if (std::all_of(std::begin(names), std::end(names),
                    [](std::string_view name) { return name.size() <= kMaxRowKeySize; })) {
      m_cells.insert(HashName(names[0], names[1], names[2]));
    }
  }
}

bool SubstitutedCells::Has(std::string_view table, std::string_view key,
                           std::string_view column) const {
  return key.size() <= kMaxRowKeySize && m_cells.count(HashName(table, key, column)) > 0;
}

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

std::uint64_t HashCell(std::uint64_t hash, const Table& table, size_t row, size_t column) {
  switch (table.Columns()[column].kind) {
    case image::ColumnKind::Text:
      return HashText(hash, table.Text(row, column));
    case image::ColumnKind::Integer:
      return HashNumber(hash, static_cast<std::uint32_t>(table.Number(row, column).value_or(0)));
    default: {
      // Data that the file lacks is not the same as none.
      const auto size = table.StreamSize(row, column);
      return HashNumber(hash, size ? *size + 1 : 0);
    }
  }
}

void MergedTables::Add(size_t position) {
  const Module& module = m_modules.At(position);
  if (!module.tables) {
    return;
  }
  const std::vector<std::string_view> ignored = ReadIgnoredTables(module);
  const SubstitutedCells* substituted = nullptr;
  if (const Table* const substitutions = module.FindTable("ModuleSubstitution")) {
    substituted = &m_substituted.emplace_back(*substitutions);
  }
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
          m_tables.emplace_back(ModuleTable{position, &table, substituted, found->second});
      added.group = AddToGroup(added, named.groups);
      named.tables.push_back(&added);
      HashRows(added, named.kind);
    }
  }
}

const std::vector<NamedTables>& MergedTables::Finish() {
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

/// Returns the position of the group; SIZE_MAX if there are too many of them already.
size_t MergedTables::AddToGroup(const ModuleTable& table, std::vector<ColumnGroup>& groups) const {
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

/// Returns whether the package has a row of its own in place of this one: TARGETDIR, or a standard
/// action.
bool MergedTables::IsOfPackage(const Table& table, TableKind kind, std::uint32_t row) const {
  if (kind == TableKind::Directory) {
    const auto directory = table.FindColumn("Directory");
    return directory && table.Text(row, *directory) == "TARGETDIR";
  }
  if (kind != TableKind::Sequence) {
    return false;
  }
  const auto action = table.FindColumn("Action");
  const auto base = table.FindColumn("BaseAction");
  if (!action || (base && !table.IsNull(row, *base))) {
    return false;
  }
  const std::string_view name = table.Text(row, *action);
  return !m_modules.HasRow("CustomAction", "Action", name) &&
         !m_modules.HasRow("Dialog", "Dialog", name);
}

void MergedTables::HashRows(const ModuleTable& owner, TableKind kind) {
  const Table& table = *owner.table;
  const std::vector<Column>& columns = table.Columns();
  const auto isKey = [](const Column& column) { return column.isKey; };
  const bool canDiffer = std::any_of(columns.begin(), columns.end(), isKey) &&
                         !std::all_of(columns.begin(), columns.end(), isKey);
  for (std::uint32_t row = 0; canDiffer && row < table.RowCount(); ++row) {
    if (IsOfPackage(table, kind, row)) {
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

}  // namespace qm::merge
