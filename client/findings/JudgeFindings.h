#pragma once

#include <set>
#include <string>
#include <vector>

#include "client/findings/Baseline.h"

namespace mmcat {

// Decides which findings are new, known or ignored.

/// Findings that the user does not want to see: all of a code, or those of it that are about one
/// module, row or file.
struct IgnoreRule {
  std::string text;  ///< as the user wrote it, CODE or CODE:KEY
  std::string code;
  std::string key;  ///< of a module (ID or ID:LANGUAGE), a row or a file; empty for all findings
};

/// Parses CODE[:KEY].
IgnoreRule ParseIgnoreRule(const std::string& text);

enum class FindingStatus {
  New,
  Baseline,  ///< known: the baseline has it
  Ignored,   ///< a rule names it
};

/// "new", "baseline" or "ignored".
const char* GetStatusName(FindingStatus status) noexcept;

struct JudgedFinding {
  FindingFacts facts;
  FindingIdentity identity;
  int occurrence = 1;  ///< among the findings of the same identity, from 1
  FindingStatus status = FindingStatus::New;
};

struct Judgement {
  std::vector<JudgedFinding> findings;   ///< in the given order
  std::vector<BaselineEntry> matched;    ///< entries, with the counts that match findings
  std::vector<BaselineEntry> unmatched;  ///< entries, with the counts that do not
  std::vector<IgnoreRule> unmatchedRules;
};

/// Judges the findings of a run. One that a rule and the baseline both name is ignored.
Judgement JudgeFindings(std::vector<FindingFacts> findings,
                        const std::vector<BaselineEntry>& baseline,
                        const std::vector<IgnoreRule>& rules);

/// Removes and returns the unmatched entries that are not only about modules with these keys,
/// because a check of these modules says nothing about them.
std::vector<BaselineEntry> TakeEntriesOfOthers(const std::set<std::string>& checked,
                                               Judgement& judgement);

/// The baseline that has all findings but the ignored ones. Keeps the reasons in `known`.
std::vector<BaselineEntry> MakeBaseline(const std::vector<JudgedFinding>& findings,
                                        const std::vector<BaselineEntry>& known);

/// The lowest severity that fails a run.
enum class FailOn { Error, Warning, Note, Never };

/// Returns whether a finding is new and bad enough.
bool Fails(const JudgedFinding& finding, FailOn failOn) noexcept;

}  // namespace mmcat
