#include "client/findings/Annotations.h"

#include <initializer_list>
#include <set>
#include <utility>

#include "client/findings/Rules.h"
#include "client/terminal/Text.h"

namespace mmcat {

namespace {

/// Replaces the characters that have a special meaning to a service.
std::string Escape(const std::string& text,
                   std::initializer_list<std::pair<char, const char*>> replacements) {
  std::string escaped;
  for (const char c : text) {
    const char* replacement = nullptr;
    for (const auto& [character, with] : replacements) {
      replacement = c == character ? with : replacement;
    }
    if (replacement) {
      escaped += replacement;
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string EscapeGitHubMessage(const std::string& text) {
  return Escape(text, {{'%', "%25"}, {'\r', "%0D"}, {'\n', "%0A"}});
}

std::string EscapeGitHubProperty(const std::string& text) {
  return Escape(text, {{'%', "%25"}, {'\r', "%0D"}, {'\n', "%0A"}, {':', "%3A"}, {',', "%2C"}});
}

std::string EscapeAzureMessage(const std::string& text) {
  return Escape(text, {{'%', "%AZP25"}, {'\r', "%0D"}, {'\n', "%0A"}});
}

std::string EscapeAzureProperty(const std::string& text) {
  return Escape(text, {{'%', "%AZP25"}, {'\r', "%0D"}, {'\n', "%0A"}, {';', "%3B"}, {']', "%5D"}});
}

std::string EscapeTeamCity(const std::string& text) {
  return Escape(text,
                {{'|', "||"}, {'\'', "|'"}, {'\n', "|n"}, {'\r', "|r"}, {'[', "|["}, {']', "|]"}});
}

/// Calls `use` with each new finding and its location. The text of the finding is on one line.
template <class Use>
void ForEachNew(const CheckResult& result, Use use) {
  for (const JudgedFinding& finding : result.findings) {
    if (finding.status == FindingStatus::New) {
      JudgedFinding printable = finding;
      printable.facts.text = MakePrintable(finding.facts.text);
      use(printable, LocateFinding(result, finding.facts));
    }
  }
}

std::string DescribeFailure(const FileFailure& failure) {
  return failure.file + ": " + FormatHResult(failure.result) + ' ' + failure.description;
}

/// What could not be read, and why nothing was checked.
std::vector<std::string> DescribeFailures(const CheckResult& result) {
  std::vector<std::string> texts;
  texts.reserve(result.failures.size() + 1);
  for (const FileFailure& failure : result.failures) {
    texts.push_back(DescribeFailure(failure));
  }
  if (!result.whyUnchecked.empty()) {
    texts.push_back(result.whyUnchecked);
  }
  return texts;
}

}  // namespace

std::string FormatGitHub(const CheckResult& result) {
  std::string text;
  ForEachNew(result, [&](const JudgedFinding& finding, const std::string& path) {
    const std::string& severity = finding.facts.severity;
    text += "::" + (severity == "note" ? "notice" : severity) +
            " file=" + EscapeGitHubProperty(path) +
            ",line=1,title=" + EscapeGitHubProperty(finding.facts.code) +
            "::" + EscapeGitHubMessage(finding.facts.text) + '\n';
  });
  for (const FileFailure& failure : result.failures) {
    text += "::error title=unreadable::" + EscapeGitHubMessage(DescribeFailure(failure)) + '\n';
  }
  if (!result.whyUnchecked.empty()) {
    text += "::error title=not checked::" + EscapeGitHubMessage(result.whyUnchecked) + '\n';
  }
  return text;
}

std::string FormatAzure(const CheckResult& result) {
  std::string text;
  ForEachNew(result, [&](const JudgedFinding& finding, const std::string& path) {
    const bool isError = finding.facts.severity == "error";  // the service has no notes
    text += std::string("##vso[task.logissue type=") + (isError ? "error" : "warning") +
            ";sourcepath=" + EscapeAzureProperty(path) +
            ";linenumber=1;code=" + EscapeAzureProperty(finding.facts.code) + ";]" +
            EscapeAzureMessage(finding.facts.text) + '\n';
  });
  for (const std::string& failure : DescribeFailures(result)) {
    text += "##vso[task.logissue type=error;]" + EscapeAzureMessage(failure) + '\n';
  }
  return text;
}

std::string FormatTeamCity(const CheckResult& result) {
  std::string text;
  std::set<std::string> described;
  ForEachNew(result, [&](const JudgedFinding& finding, const std::string& path) {
    const std::string code = EscapeTeamCity(finding.facts.code);
    if (described.insert(code).second) {
      const Rule rule = FindRule(finding.facts.code);
      text += "##teamcity[inspectionType id='" + code + "' name='" + code + "' description='" +
              EscapeTeamCity(rule.title) + "' category='Merge modules']\n";
    }
    const std::string& severity = finding.facts.severity;
    text += "##teamcity[inspection typeId='" + code + "' message='" +
            EscapeTeamCity(finding.facts.text) + "' file='" + EscapeTeamCity(path) +
            "' line='1' SEVERITY='" +
            (severity == "error"     ? "ERROR"
             : severity == "warning" ? "WARNING"
                                     : "INFO") +
            "']\n";
  });
  for (const std::string& failure : DescribeFailures(result)) {
    text += "##teamcity[message text='" + EscapeTeamCity(failure) + "' status='ERROR']\n";
  }
  return text;
}

std::string FormatGitLab(const CheckResult& result) {
  Json issues = Json::array();
  ForEachNew(result, [&](const JudgedFinding& finding, const std::string& path) {
    const std::string& severity = finding.facts.severity;
    issues.push_back({{"description", finding.facts.text},
                      {"check_name", finding.facts.code},
                      {"fingerprint", MakeFingerprint(finding.identity, finding.occurrence)},
                      {"severity", severity == "error"     ? "major"
                                   : severity == "warning" ? "minor"
                                                           : "info"},
                      {"location", {{"path", path}, {"lines", {{"begin", 1}}}}}});
  });
  const auto addFailure = [&](const char* name, const std::string& text, const std::string& path,
                              const std::string& part) {
    issues.push_back({{"description", text},
                      {"check_name", name},
                      {"fingerprint", MakeFingerprint({name, {path}, part, ""}, 1)},
                      {"severity", "critical"},
                      {"location", {{"path", path}, {"lines", {{"begin", 1}}}}}});
  };
  for (const FileFailure& failure : result.failures) {
    addFailure("unreadable", DescribeFailure(failure), failure.file, failure.part);
  }
  if (!result.whyUnchecked.empty()) {
    addFailure("not-checked", result.whyUnchecked, "catalog", "");
  }
  return FormatJson(issues);
}

}  // namespace mmcat
