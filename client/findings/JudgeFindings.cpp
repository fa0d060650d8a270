#include "client/findings/JudgeFindings.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "text/Fold.h"

namespace mmcat {

namespace {

bool IsModule(const std::string& key, const std::string& folded) {
  const std::string foldedKey = qm::text::FoldCase(key);
  return foldedKey == folded || foldedKey.substr(0, foldedKey.find_last_of(':')) == folded;
}

bool Matches(const IgnoreRule& rule, const JudgedFinding& finding) {
  if (rule.code != finding.facts.code) {
    return false;
  }
  if (rule.key.empty()) {
    return true;
  }
  const std::string folded = qm::text::FoldCase(rule.key);
  const auto isIt = [&](const std::string& module) { return IsModule(module, folded); };
  return std::any_of(finding.identity.modules.begin(), finding.identity.modules.end(), isIt) ||
         (finding.facts.required && isIt(finding.facts.required->key)) ||
         qm::text::FoldCase(finding.facts.key) == folded ||
         qm::text::FoldCase(finding.facts.file) == folded;
}

FailOn RankOf(const std::string& severity) noexcept {
  return severity == "note"      ? FailOn::Note
         : severity == "warning" ? FailOn::Warning
                                 : FailOn::Error;
}

}  // namespace

IgnoreRule ParseIgnoreRule(const std::string& text) {
  const size_t colon = text.find(':');
  return {text, text.substr(0, colon),
          colon == std::string::npos ? std::string() : text.substr(colon + 1)};
}

const char* GetStatusName(FindingStatus status) noexcept {
  switch (status) {
    case FindingStatus::New:
      return "new";
    case FindingStatus::Baseline:
      return "baseline";
    default:
      return "ignored";
  }
}

Judgement JudgeFindings(std::vector<FindingFacts> findings,
                        const std::vector<BaselineEntry>& baseline,
                        const std::vector<IgnoreRule>& rules) {
  Judgement judgement;
  std::map<FindingIdentity, int> occurrences;
  std::map<FindingIdentity, int> known;
  for (const BaselineEntry& entry : baseline) {
    known[entry.identity] += entry.count;
  }
  std::vector<bool> isMatched(rules.size());
  judgement.findings.reserve(findings.size());
  for (FindingFacts& facts : findings) {
    JudgedFinding finding;
    finding.identity = Identify(facts);
    finding.facts = std::move(facts);
    finding.occurrence = ++occurrences[finding.identity];
    const auto entry = known.find(finding.identity);
    if (entry != known.end() && finding.occurrence <= entry->second) {
      finding.status = FindingStatus::Baseline;
    }
    for (size_t rule = 0; rule < rules.size(); ++rule) {
      if (Matches(rules[rule], finding)) {
        finding.status = FindingStatus::Ignored;
        isMatched[rule] = true;
      }
    }
    judgement.findings.push_back(std::move(finding));
  }
  for (BaselineEntry entry : baseline) {
    const auto found = occurrences.find(entry.identity);
    const int matched = found == occurrences.end() ? 0 : std::min(found->second, entry.count);
    const int unmatched = entry.count - matched;
    entry.count = matched;
    if (matched > 0) {
      judgement.matched.push_back(entry);
    }
    entry.count = unmatched;
    if (unmatched > 0) {
      judgement.unmatched.push_back(std::move(entry));
    }
  }
  for (size_t rule = 0; rule < rules.size(); ++rule) {
    if (!isMatched[rule]) {
      judgement.unmatchedRules.push_back(rules[rule]);
    }
  }
  return judgement;
}

std::vector<BaselineEntry> TakeEntriesOfOthers(const std::set<std::string>& checked,
                                               Judgement& judgement) {
  const auto isAboutChecked = [&](const BaselineEntry& entry) {
    const std::vector<std::string>& modules = entry.identity.modules;
    return !modules.empty() &&
           std::all_of(modules.begin(), modules.end(),
                       [&](const std::string& module) { return checked.count(module) > 0; });
  };
  std::vector<BaselineEntry>& entries = judgement.unmatched;
  const auto others = std::stable_partition(entries.begin(), entries.end(), isAboutChecked);
  std::vector<BaselineEntry> taken(std::make_move_iterator(others),
                                   std::make_move_iterator(entries.end()));
  entries.erase(others, entries.end());
  return taken;
}

std::vector<BaselineEntry> MakeBaseline(const std::vector<JudgedFinding>& findings,
                                        const std::vector<BaselineEntry>& known) {
  std::map<FindingIdentity, BaselineEntry> entries;
  for (const JudgedFinding& finding : findings) {
    if (finding.status != FindingStatus::Ignored) {
      const auto [entry, isNew] = entries.try_emplace(finding.identity);
      entry->second.identity = finding.identity;
      entry->second.count += isNew ? 0 : 1;
    }
  }
  for (const BaselineEntry& entry : known) {
    if (const auto found = entries.find(entry.identity); found != entries.end()) {
      found->second.reason = entry.reason;
    }
  }
  std::vector<BaselineEntry> list;
  list.reserve(entries.size());
  for (auto& [identity, entry] : entries) {
    list.push_back(std::move(entry));
  }
  return list;
}

bool Fails(const JudgedFinding& finding, FailOn failOn) noexcept {
  return finding.status == FindingStatus::New && failOn != FailOn::Never &&
         RankOf(finding.facts.severity) <= failOn;
}

}  // namespace mmcat
