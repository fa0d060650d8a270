#include "client/findings/JudgeFindings.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "text/Fold.h"

namespace mmcat {

namespace {

/// Looks rules up by code and key, because a settings file may have thousands.
class RuleIndex {
 public:
  explicit RuleIndex(const std::vector<IgnoreRule>& rules) {
    for (const IgnoreRule& rule : rules) {
      m_isMatched[IndexOf(rule)] = false;
    }
  }

  /// Returns whether any rule names a finding, and marks all rules that do.
  bool Match(const JudgedFinding& finding) {
    bool isMatched = MatchKey(finding, "");
    for (const std::string& module : finding.identity.modules) {
      isMatched = MatchModule(finding, module) || isMatched;
    }
    if (finding.facts.required) {
      isMatched = MatchModule(finding, finding.facts.required->key) || isMatched;
    }
    for (const std::string& key : {finding.facts.key, finding.facts.file}) {
      isMatched = (!key.empty() && MatchKey(finding, key)) || isMatched;
    }
    return isMatched;
  }

  bool IsMatched(const IgnoreRule& rule) const { return m_isMatched.at(IndexOf(rule)); }

 private:
  using Index = std::pair<std::string, std::string>;  ///< the code and the folded key

  static Index IndexOf(const IgnoreRule& rule) { return {rule.code, qm::text::FoldCase(rule.key)}; }

  bool MatchKey(const JudgedFinding& finding, const std::string& key) {
    const auto found = m_isMatched.find({finding.facts.code, qm::text::FoldCase(key)});
    if (found == m_isMatched.end()) {
      return false;
    }
    found->second = true;
    return true;
  }

  bool MatchModule(const JudgedFinding& finding, const std::string& key) {
    const bool isIt = MatchKey(finding, key);
    return MatchKey(finding, key.substr(0, key.find_last_of(':'))) || isIt;
  }

  std::map<Index, bool> m_isMatched;
};

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
  RuleIndex index(rules);
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
    if (index.Match(finding)) {
      finding.status = FindingStatus::Ignored;
    }
    judgement.findings.push_back(std::move(finding));
  }
  for (BaselineEntry entry : baseline) {
    const auto found = occurrences.find(entry.identity);
    const int matched = found == occurrences.end() ? 0 : std::min(found->second, entry.count);
    const int unmatched = entry.count - matched;
    if (matched > 0) {
      found->second -= matched;  // another entry may have the same identity
    }
    entry.count = matched;
    if (matched > 0) {
      judgement.matched.push_back(entry);
    }
    entry.count = unmatched;
    if (unmatched > 0) {
      judgement.unmatched.push_back(std::move(entry));
    }
  }
  std::copy_if(rules.begin(), rules.end(), std::back_inserter(judgement.unmatchedRules),
               [&](const IgnoreRule& rule) { return !index.IsMatched(rule); });
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
