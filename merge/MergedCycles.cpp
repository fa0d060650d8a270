#include "merge/MergedCycles.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "merge/Hashing.h"
#include "merge/ParentCycles.h"

namespace qm::merge {

namespace {

using Cycle = std::vector<std::size_t>;

/// The row that each row refers to: in the merged table, and among the rows of its own module.
struct Parents {
  std::vector<std::size_t> merged;
  std::vector<std::size_t> own;
};

std::uint64_t HashOwn(std::size_t module, std::string_view key) noexcept {
  return HashText(HashNumber(kHashSeed, module), key);
}

Parents FindParents(const std::vector<LinkedRow>& rows) {
  std::unordered_map<std::string_view, std::size_t> merged;
  std::unordered_map<std::uint64_t, std::size_t> own;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    merged.emplace(rows[i].key, i);
    own.emplace(HashOwn(rows[i].module, rows[i].key), i);
  }
  const auto find = [](const auto& numbers, const auto& key) {
    const auto found = numbers.find(key);
    return found == numbers.end() ? kNoParent : found->second;
  };
  Parents parents{std::vector<std::size_t>(rows.size(), kNoParent),
                  std::vector<std::size_t>(rows.size(), kNoParent)};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!rows[i].parent.empty()) {
      parents.merged[i] = find(merged, rows[i].parent);
      parents.own[i] = find(own, HashOwn(rows[i].module, rows[i].parent));
    }
  }
  return parents;
}

std::vector<Cycle> FindMergedCycles(const std::vector<LinkedRow>& rows) {
  const Parents parents = FindParents(rows);
  std::unordered_set<std::string_view> known;
  for (const Cycle& cycle : FindParentCycles(parents.own)) {
    for (const std::size_t row : cycle) {
      known.insert(rows[row].key);
    }
  }
  std::vector<Cycle> cycles = FindParentCycles(parents.merged);
  const auto isKnown = [&](const Cycle& cycle) {
    return std::any_of(cycle.begin(), cycle.end(),
                       [&](std::size_t row) { return known.count(rows[row].key) > 0; });
  };
  cycles.erase(std::remove_if(cycles.begin(), cycles.end(), isKnown), cycles.end());
  return cycles;
}

}  // namespace

void AddMergedCycles(const std::vector<LinkedRow>& rows, const CycleDescription& description,
                     FindingList& findings) {
  for (const Cycle& cycle : FindMergedCycles(rows)) {
    if (!findings.Admit(description.code)) {
      continue;
    }
    std::vector<std::size_t> modules;
    std::vector<std::string> names;
    std::vector<FindingValue> values;
    for (const std::size_t at : cycle) {
      const LinkedRow& row = rows[at];
      names.push_back(Shorten(row.key) + " of " + findings.NameOf(row.module));
      if (values.size() < FindingList::kMaxModules) {
        values.push_back({row.module, description.column, Shorten(row.parent)});
        if (std::find(modules.begin(), modules.end(), row.module) == modules.end()) {
          modules.push_back(row.module);
        }
      }
    }
    Finding& finding =
        findings.Add(description.code, modules, description.text + JoinSome(names, ", "));
    finding.table = description.table;
    finding.key = Shorten(rows[cycle.front()].key);
    finding.values = std::move(values);
  }
}

}  // namespace qm::merge
