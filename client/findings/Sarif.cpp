#include "client/findings/Sarif.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "client/findings/Location.h"
#include "client/findings/Rules.h"

namespace mmcat {

namespace {

constexpr size_t kMostResults = 25000;  // large consumers accept no more

using RuleNumbers = std::map<std::string, size_t>;

/// Orders severities, the worst first.
int RankOf(const JudgedFinding& finding) {
  return finding.facts.severity == "note" ? 2 : finding.facts.severity == "warning" ? 1 : 0;
}

/// The findings that are listed: new ones before others, and the worst first, if there are too
/// many.
std::vector<const JudgedFinding*> ChooseFindings(const std::vector<JudgedFinding>& findings) {
  std::vector<const JudgedFinding*> chosen;
  chosen.reserve(findings.size());
  for (const JudgedFinding& finding : findings) {
    chosen.push_back(&finding);
  }
  if (chosen.size() > kMostResults) {
    std::stable_sort(chosen.begin(), chosen.end(),
                     [](const JudgedFinding* a, const JudgedFinding* b) {
                       const bool aIsOld = a->status != FindingStatus::New;
                       const bool bIsOld = b->status != FindingStatus::New;
                       return aIsOld != bIsOld ? bIsOld : RankOf(*a) < RankOf(*b);
                     });
    chosen.resize(kMostResults);
  }
  return chosen;
}

Json MakeMessage(const std::string& text) { return {{"text", text}}; }

/// Markdown without the marks of headings and code.
std::string RemoveMarkup(std::string markdown) {
  for (const char* mark : {"**", "`"}) {
    for (size_t at = markdown.find(mark); at != std::string::npos; at = markdown.find(mark, at)) {
      markdown.erase(at, std::strlen(mark));
    }
  }
  return markdown;
}

Json MakeRulesJson(const std::vector<const JudgedFinding*>& findings, RuleNumbers& numbers) {
  for (const JudgedFinding* finding : findings) {
    numbers[finding->facts.code] = 0;
  }
  Json rules = Json::array();
  for (auto& [code, number] : numbers) {
    number = rules.size();
    const Rule rule = FindRule(code);
    rules.push_back({{"id", code},
                     {"shortDescription", MakeMessage(rule.title)},
                     {"fullDescription", MakeMessage(rule.title + '.')},
                     {"help", {{"text", RemoveMarkup(rule.help)}, {"markdown", rule.help}}},
                     {"properties", {{"tags", Json::array({"merge-modules"})}}}});
  }
  return rules;
}

Json MakePhysicalLocation(const std::string& path) {
  // A module is not text; consumers want a line nevertheless.
  return {{"artifactLocation", {{"uri", MakeUri(path)}}}, {"region", {{"startLine", 1}}}};
}

Json MakeLogicalLocations(const FindingFacts& finding) {
  Json locations = Json::array();
  if (finding.table.empty()) {
    return locations;
  }
  locations.push_back(
      {{"name", finding.table}, {"fullyQualifiedName", finding.table}, {"kind", "table"}});
  if (finding.key.empty()) {
    return locations;
  }
  const std::string row = finding.table + '/' + finding.key;
  locations.push_back({{"name", finding.key}, {"fullyQualifiedName", row}, {"kind", "row"}});
  std::string previous;
  for (const FindingValueFacts& value : finding.values) {
    if (value.column != previous && !value.column.empty()) {
      locations.push_back({{"name", value.column},
                           {"fullyQualifiedName", row + '/' + value.column},
                           {"kind", "column"}});
      previous = value.column;
    }
  }
  return locations;
}

/// The modules of a finding after the first.
Json MakeRelatedLocations(const CheckResult& result, const FindingFacts& finding) {
  Json locations = Json::array();
  for (size_t i = 1; i < finding.modules.size(); ++i) {
    const ModuleFacts& module = result.modules[finding.modules[i]];
    locations.push_back({{"id", i},
                         {"physicalLocation", MakePhysicalLocation(LocateModule(result, module))},
                         {"message", MakeMessage(module.key.empty() ? module.path : module.key)}});
  }
  return locations;
}

Json MakeResultJson(const CheckResult& result, const JudgedFinding& finding,
                    const RuleNumbers& rules) {
  const FindingFacts& facts = finding.facts;
  Json location{{"physicalLocation", MakePhysicalLocation(LocateFinding(result, facts))}};
  const auto addUnlessEmpty = [](Json& object, const char* member, Json list) {
    if (!list.empty()) {
      object[member] = std::move(list);
    }
  };
  addUnlessEmpty(location, "logicalLocations", MakeLogicalLocations(facts));
  Json json{{"ruleId", facts.code},
            {"ruleIndex", rules.at(facts.code)},
            {"level", facts.severity},
            {"message", MakeMessage(facts.text)},
            {"locations", Json::array({std::move(location)})}};
  addUnlessEmpty(json, "relatedLocations", MakeRelatedLocations(result, facts));
  json["partialFingerprints"] = {
      {"finding/v1", MakeFingerprint(finding.identity, finding.occurrence)}};
  if (finding.status != FindingStatus::New) {
    const bool isKnown = finding.status == FindingStatus::Baseline;
    json["suppressions"] = Json::array(
        {{{"kind", "external"}, {"justification", isKnown ? "in the baseline" : "ignored"}}});
  }
  json["properties"] = {{"modules", facts.moduleKeys}};
  return json;
}

Json MakeNotification(const char* level, const std::string& text) {
  return {{"level", level}, {"message", MakeMessage(text)}};
}

/// How the run went: what could not be read, why nothing was checked, and what was left out.
Json MakeInvocation(const CheckResult& result) {
  Json notifications = Json::array();
  for (const FileFailure& failure : result.failures) {
    notifications.push_back(MakeNotification("error", failure.file + ": " + failure.description));
  }
  if (!result.whyUnchecked.empty()) {
    notifications.push_back(MakeNotification("error", result.whyUnchecked));
  }
  if (const size_t count = CountLeftOutOfSarif(result); count > 0) {
    notifications.push_back(MakeNotification(
        "warning", std::to_string(count) + " of " + std::to_string(result.findings.size()) +
                       " findings are left out, because consumers accept no more than " +
                       std::to_string(kMostResults)));
  }
  return {{"executionSuccessful", result.exitCode == kSuccess || result.exitCode == kFindings},
          {"exitCode", static_cast<int>(result.exitCode)},
          {"toolExecutionNotifications", std::move(notifications)}};
}

}  // namespace

size_t CountLeftOutOfSarif(const CheckResult& result) noexcept {
  return result.findings.size() - std::min(result.findings.size(), kMostResults);
}

std::string FormatSarif(const CheckResult& result) {
  const std::vector<const JudgedFinding*> findings = ChooseFindings(result.findings);
  RuleNumbers ruleNumbers;
  Json rules = MakeRulesJson(findings, ruleNumbers);
  Json results = Json::array();
  for (const JudgedFinding* finding : findings) {
    results.push_back(MakeResultJson(result, *finding, ruleNumbers));
  }
  Json driver{{"name", "mmcat"}, {"version", MMCAT_VERSION}, {"rules", std::move(rules)}};
  Json run{{"tool", {{"driver", std::move(driver)}}},
           {"invocations", Json::array({MakeInvocation(result)})},
           {"columnKind", "utf16CodeUnits"},
           {"results", std::move(results)}};
  return FormatJson({{"$schema",
                      "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
                      "sarif-schema-2.1.0.json"},
                     {"version", "2.1.0"},
                     {"runs", Json::array({std::move(run)})}});
}

}  // namespace mmcat
