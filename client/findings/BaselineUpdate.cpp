#include "client/findings/BaselineUpdate.h"

#include <algorithm>

#include "client/findings/BaselineFile.h"
#include "client/terminal/Report.h"

namespace mmcat {

namespace {

constexpr size_t kMostRemarks = 10;

enum class Update {
  None,
  Pruned,
  Written,
  WrittenWithOldEntries,  ///< the file keeps entries that match no finding
};

/// Returns the entries of both lists.
std::vector<BaselineEntry> Join(std::vector<BaselineEntry> entries,
                                const std::vector<BaselineEntry>& more) {
  entries.insert(entries.end(), more.begin(), more.end());
  return entries;
}

Update WriteFindings(const BaselineOptions& options, const PreviousBaseline& previous,
                     Coverage coverage, Judgement& judgement) {
  // These entries have only the counts that match no finding. MakeBaseline adds the others.
  std::vector<BaselineEntry> kept = previous.ofOthers;
  const bool keepsOld = coverage == Coverage::Partial && !judgement.unmatched.empty();
  if (keepsOld) {
    kept = Join(std::move(kept), judgement.unmatched);
  }
  WriteBaseline(options.file, Join(MakeBaseline(judgement.findings, previous.entries), kept));
  for (JudgedFinding& finding : judgement.findings) {
    finding.status =
        finding.status == FindingStatus::New ? FindingStatus::Baseline : finding.status;
  }
  return keepsOld ? Update::WrittenWithOldEntries : Update::Written;
}

Update Prune(const BaselineOptions& options, const PreviousBaseline& previous, Coverage coverage,
             const Judgement& judgement) {
  if (coverage == Coverage::Partial) {
    PrintRemark(options.file +
                ": not pruned, because files that cannot be read may have findings too");
    return Update::None;
  }
  if (judgement.unmatched.empty()) {
    return Update::None;
  }
  if (judgement.matched.empty() && previous.ofOthers.empty()) {
    PrintRemark(options.file +
                ": not pruned, because no entry matches; is it the baseline of another catalog? "
                "--write-baseline makes a new one");
    return Update::None;
  }
  WriteBaseline(options.file, Join(judgement.matched, previous.ofOthers));
  return Update::Pruned;
}

std::string FormatEntry(const BaselineEntry& entry) {
  return FormatIdentity(entry.identity) +
         (entry.count == 1 ? "" : " (" + std::to_string(entry.count) + " times)");
}

void PrintRules(const std::vector<IgnoreRule>& rules) {
  for (size_t i = 0; i < std::min(rules.size(), kMostRemarks); ++i) {
    PrintRemark("ignore " + rules[i].text + ": no finding matches");
  }
  if (rules.size() > kMostRemarks) {
    PrintRemark("ignore: nor " + std::to_string(rules.size() - kMostRemarks) + " more");
  }
}

void PrintUnmatched(const std::string& file, const std::vector<BaselineEntry>& entries,
                    Update update) {
  const bool arePruned = update == Update::Pruned;
  for (size_t i = 0; i < std::min(entries.size(), kMostRemarks); ++i) {
    PrintRemark(file + (arePruned ? ": removed " : ": no finding matches ") +
                FormatEntry(entries[i]));
  }
  if (entries.size() > kMostRemarks) {
    PrintRemark(file + (arePruned ? ": removed " : ": nor ") +
                std::to_string(entries.size() - kMostRemarks) + " more entries");
  }
}

}  // namespace

void UpdateBaseline(const BaselineOptions& options, const PreviousBaseline& previous,
                    Coverage coverage, Judgement& judgement) {
  const Update update = options.isWritten  ? WriteFindings(options, previous, coverage, judgement)
                        : options.isPruned ? Prune(options, previous, coverage, judgement)
                                           : Update::None;
  PrintRules(judgement.unmatchedRules);
  if (update == Update::Written) {
    judgement.unmatched.clear();
  } else if (update == Update::WrittenWithOldEntries) {
    PrintRemark(options.file + ": kept entries that no finding matches (" +
                std::to_string(judgement.unmatched.size()) +
                "), because files that cannot be read may have these findings");
  } else {
    PrintUnmatched(options.file, judgement.unmatched, update);
    if (!judgement.unmatched.empty() && !options.isPruned) {
      PrintHint(options.file + ": --prune-baseline removes what no finding matches");
    }
  }
}

}  // namespace mmcat
