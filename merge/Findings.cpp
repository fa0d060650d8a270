#include "merge/Findings.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "merge/Checks.h"

namespace qm::merge {

Finding MakeFinding(const char* code, std::string text) {
  const FindingCode& entry = GetFindingCode(code);
  Finding finding;
  finding.code = entry.code;
  finding.severity = entry.severity;
  finding.mergeError = entry.mergeError;
  finding.text = std::move(text);
  return finding;
}

std::vector<size_t> FindExcludedModules(const ModuleIndex& set, size_t excluding,
                                        const Exclusion& exclusion) {
  std::vector<size_t> positions;
  for (const ExcludedModule& excluded : set.FindExcluded(excluding, exclusion)) {
    positions.push_back(excluded.module);
  }
  std::sort(positions.begin(), positions.end());
  return positions;
}

std::vector<Finding> CheckModules(const ModuleIndex& set, const std::vector<size_t>& scope,
                                  const CheckOptions& options) {
  const CheckedModules modules(set, scope, options);
  FindingList findings(set);
  CheckModuleFacts(modules, findings);
  CheckIdentities(modules, findings);
  CheckRequirements(modules, findings);
  CheckExclusions(modules, findings);
  CheckRows(modules, findings);
  CheckFiles(modules, findings);
  CheckComponents(modules, findings);
  CheckReferences(modules, findings);
  CheckSequences(modules, findings);
  return findings.Take();
}

std::vector<Finding> CheckIndexes(const ModuleIndex& set, const std::vector<IndexEntry>& entries) {
  std::map<std::pair<std::string, std::string>, std::vector<const IndexEntry*>> unknown;
  for (const IndexEntry& entry : entries) {
    if (set.FindByKey(entry.moduleKey).empty()) {
      unknown[{entry.table, entry.moduleKey}].push_back(&entry);
    }
  }
  std::vector<Finding> findings;
  for (const auto& [place, lines] : unknown) {
    const std::string more =
        lines.size() == 1 ? "" : " and " + std::to_string(lines.size() - 1) + " more";
    Finding& finding = findings.emplace_back(
        MakeFinding(kUnknownModule, place.first + " names " + place.second + " for " +
                                        QuoteShort(lines.front()->name) + more +
                                        ", and the set does not have it"));
    finding.modules = {place.second};
  }
  return findings;
}

void SortFindings(std::vector<Finding>& findings) {
  std::sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.code, a.isRest, a.modules, a.text) <
           std::tie(b.code, b.isRest, b.modules, b.text);
  });
}

}  // namespace qm::merge
