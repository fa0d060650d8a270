#pragma once

#include <string>
#include <vector>

#include "client/findings/JudgeFindings.h"
#include "client/terminal/ExitCode.h"

namespace mmcat {

/// What a check found, for all formats. Texts are UTF-8.
struct CheckResult {
  const std::vector<ModuleFacts>& modules;  ///< of the set
  std::vector<size_t> scope = {};           ///< positions of those that were checked
  std::vector<JudgedFinding> findings = {};
  std::vector<BaselineEntry> unmatchedBaseline = {};
  std::vector<FileFailure> failures = {};  ///< neither findings nor accepted
  FailOn failOn = FailOn::Warning;
  std::string base = {};          ///< the folder that paths are relative to, a full path
  ExitCode exitCode = kSuccess;   ///< of the run
  std::string whyUnchecked = {};  ///< why the run checked nothing; empty if it did
};

/// Where a finding is shown: the file of its first module, relative to the folder of the result.
/// For a finding without such a file, returns a name for what it is about. Never empty.
std::string LocateFinding(const CheckResult& result, const FindingFacts& finding);

/// The same for a module.
std::string LocateModule(const CheckResult& result, const ModuleFacts& module);

}  // namespace mmcat
