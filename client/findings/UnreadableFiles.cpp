#include "client/findings/UnreadableFiles.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "client/catalog/UserPath.h"

namespace mmcat {

namespace {

constexpr char kModule[] = "unreadable-module";
constexpr char kIndex[] = "unreadable-index";

/// Returns whether a finding says that a file cannot be read.
bool SaysUnreadable(const FindingFacts& finding, const std::string& file,
                    const std::vector<ModuleFacts>& modules) {
  if (finding.code == kIndex) {
    return GetFileName(file) == finding.file;
  }
  return finding.code == kModule &&
         std::any_of(finding.modules.begin(), finding.modules.end(),
                     [&](size_t position) { return modules[position].path == file; });
}

using PositionsByPath = std::unordered_map<std::string_view, size_t>;

PositionsByPath IndexPaths(const std::vector<ModuleFacts>& modules) {
  PositionsByPath positions;
  for (size_t position = 0; position < modules.size(); ++position) {
    positions.emplace(modules[position].path, position);
  }
  return positions;
}

/// Makes the finding that a check of everything would have about a failure.
FindingFacts MakeFinding(const FileFailure& failure, const std::vector<ModuleFacts>& modules,
                         const PositionsByPath& positions) {
  FindingFacts finding;
  const auto found = positions.find(failure.file);
  if (found == positions.end()) {
    finding.code = kIndex;
    finding.file = GetFileName(failure.file);
  } else {
    finding.code = kModule;
    const ModuleFacts& module = modules[found->second];
    finding.modules = {found->second};
    finding.moduleKeys = {module.key.empty() ? module.path : module.key};
  }
  return finding;
}

}  // namespace

bool IsUnreadable(const FindingFacts& finding) {
  return finding.code == kModule || finding.code == kIndex;
}

JudgedFailures JudgeFailures(const std::vector<FileFailure>& failures,
                             const std::vector<ModuleFacts>& modules, const Judgement& judgement,
                             const std::vector<BaselineEntry>& baseline,
                             const std::vector<IgnoreRule>& rules) {
  JudgedFailures judged;
  // Both lists are judged together, because an entry of the baseline covers a limited number of
  // files.
  std::vector<FindingFacts> findings;
  std::vector<FindingStatus> statuses;
  for (const JudgedFinding& finding : judgement.findings) {
    if (IsUnreadable(finding.facts)) {
      findings.push_back(finding.facts);
      statuses.push_back(finding.status);
    }
  }
  const size_t known = findings.size();
  const PositionsByPath positions = IndexPaths(modules);
  std::vector<const FileFailure*> others;
  for (const FileFailure& failure : failures) {
    const auto end = findings.begin() + static_cast<std::ptrdiff_t>(known);
    const auto found = std::find_if(findings.begin(), end, [&](const FindingFacts& finding) {
      return SaysUnreadable(finding, failure.file, modules);
    });
    if (found == end && failure.of == FailureOf::File) {
      others.push_back(&failure);
      findings.push_back(MakeFinding(failure, modules, positions));
    } else if (found == end) {
      judged.unexplained.push_back(failure);
    } else if (statuses[static_cast<size_t>(found - findings.begin())] != FindingStatus::New) {
      judged.accepted.insert(failure.file);
    }
  }
  if (others.empty()) {
    return judged;
  }
  const Judgement all = JudgeFindings(std::move(findings), baseline, rules);
  for (size_t i = 0; i < others.size(); ++i) {
    if (all.findings[known + i].status == FindingStatus::New) {
      judged.unexplained.push_back(*others[i]);
    } else {
      judged.accepted.insert(others[i]->file);
    }
  }
  return judged;
}

}  // namespace mmcat
