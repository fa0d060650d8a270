#pragma once

#include <set>
#include <string>
#include <vector>

#include "client/findings/JudgeFindings.h"

namespace mmcat {

// Files that a check could not read. Most are findings too; a check of some modules has no findings
// about the others.

/// Returns whether a finding says that a file cannot be read.
bool IsUnreadable(const FindingFacts& finding);

struct JudgedFailures {
  std::vector<FileFailure> unexplained;  ///< neither a finding nor accepted
  std::set<std::string> accepted;        ///< files whose findings are known or ignored
};

/// Judges the failures of a run by its findings. If the run has no finding about a file, judges the
/// one that a check of everything would have.
JudgedFailures JudgeFailures(const std::vector<FileFailure>& failures,
                             const std::vector<ModuleFacts>& modules, const Judgement& judgement,
                             const std::vector<BaselineEntry>& baseline,
                             const std::vector<IgnoreRule>& rules);

}  // namespace mmcat
