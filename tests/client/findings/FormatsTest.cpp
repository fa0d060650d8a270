#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client/findings/Annotations.h"
#include "client/findings/JUnit.h"
#include "client/findings/Sarif.h"

namespace qm::tests {

namespace {

using ::testing::HasSubstr;

mmcat::JudgedFinding MakeFinding(const char* severity, const std::string& key,
                                 const std::string& text) {
  mmcat::JudgedFinding finding;
  finding.facts.code = "row-conflict";
  finding.facts.severity = severity;
  finding.facts.text = text;
  finding.facts.key = key;
  finding.identity = mmcat::Identify(finding.facts);
  return finding;
}

TEST(FormatsTest, ASarifLogHasTheWorstOfTooManyFindingsAndSaysHowManyAreLeftOut) {
  const std::vector<mmcat::ModuleFacts> modules;
  mmcat::CheckResult result{modules};
  for (int i = 0; i < 30000; ++i) {
    result.findings.push_back(MakeFinding(i < 29999 ? "note" : "error", std::to_string(i), "text"));
  }
  result.findings.back().facts.code = "the-last";
  const auto log = mmcat::Json::parse(mmcat::FormatSarif(result))["runs"][0];
  EXPECT_EQ(25000U, log["results"].size());
  EXPECT_EQ("the-last", log["results"][0]["ruleId"]);
  EXPECT_THAT(log["invocations"][0]["toolExecutionNotifications"].dump(),
              HasSubstr("5000 of 30000 findings are left out"));
  for (const auto& one : log["results"]) {
    ASSERT_FALSE(one["locations"][0]["physicalLocation"]["artifactLocation"]["uri"].empty());
  }
}

TEST(FormatsTest, EveryDocumentOfARunThatCheckedNothingSaysSo) {
  const std::vector<mmcat::ModuleFacts> modules;
  mmcat::CheckResult result{modules};
  result.exitCode = mmcat::kNothingMatched;
  result.whyUnchecked = "no modules";
  const auto invocation =
      mmcat::Json::parse(mmcat::FormatSarif(result))["runs"][0]["invocations"][0];
  EXPECT_EQ(false, invocation["executionSuccessful"]);
  EXPECT_EQ(3, invocation["exitCode"]);
  EXPECT_EQ("no modules", invocation["toolExecutionNotifications"][0]["message"]["text"]);
  EXPECT_THAT(mmcat::FormatJUnit(result),
              AllOf(HasSubstr("tests=\"1\" failures=\"0\" errors=\"1\""),
                    HasSubstr("message=\"no modules\"")));
  for (const std::string& annotations :
       {mmcat::FormatGitHub(result), mmcat::FormatAzure(result), mmcat::FormatTeamCity(result),
        mmcat::FormatGitLab(result)}) {
    EXPECT_THAT(annotations, HasSubstr("no modules"));
  }
}

TEST(FormatsTest, NoTextOfAModuleIsTakenForSyntax) {
  std::vector<mmcat::ModuleFacts> modules(1);
  modules[0].path = "/src/50%,:;]'|.msm";
  mmcat::CheckResult result{modules};
  result.base = "/src";
  result.findings = {
      MakeFinding("error", "\x01<&\"", "100% of\n::error::[x]'|\x1b ##vso[a]&<\x01")};
  result.findings[0].facts.modules = {0};

  EXPECT_EQ(
      "::error file=50%25%2C%3A;]'|.msm,line=1,title=row-conflict::100%25 of ::error::[x]'|  "
      "##vso[a]&< \n",
      mmcat::FormatGitHub(result));
  EXPECT_EQ(
      "##vso[task.logissue type=error;sourcepath=50%AZP25,:%3B%5D'|.msm;linenumber=1;"
      "code=row-conflict;]100%AZP25 of ::error::[x]'|  ##vso[a]&< \n",
      mmcat::FormatAzure(result));
  EXPECT_THAT(mmcat::FormatTeamCity(result),
              HasSubstr("##teamcity[inspection typeId='row-conflict' "
                        "message='100% of ::error::|[x|]|'||  ##vso|[a|]&< ' "
                        "file='50%,:;|]|'||.msm' line='1' SEVERITY='ERROR']\n"));
  EXPECT_THAT(
      mmcat::FormatJUnit(result),
      AllOf(HasSubstr("name=\"\xEF\xBF\xBD&lt;&amp;&quot;\""),
            HasSubstr("100% of&#10;::error::[x]'|\xEF\xBF\xBD ##vso[a]&amp;&lt;\xEF\xBF\xBD")));
}

}  // namespace

}  // namespace qm::tests
