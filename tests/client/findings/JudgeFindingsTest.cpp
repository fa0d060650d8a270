#include "client/findings/JudgeFindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace qm::tests {

namespace {

using mmcat::FindingStatus;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

mmcat::FindingFacts MakeFinding(std::vector<std::string> modules) {
  mmcat::FindingFacts finding;
  finding.code = "row-conflict";
  finding.severity = "error";
  finding.moduleKeys = std::move(modules);
  finding.table = "File";
  finding.key = "Key/2";
  finding.text = "names the places of today";
  return finding;
}

std::vector<FindingStatus> StatusesOf(const mmcat::Judgement& judgement) {
  std::vector<FindingStatus> statuses;
  for (const mmcat::JudgedFinding& finding : judgement.findings) {
    statuses.push_back(finding.status);
  }
  return statuses;
}

TEST(JudgeFindingsTest, ABaselineIsAMultisetThatIgnoresOrderAndPlace) {
  const auto first = MakeFinding({"A.1:0", "/one/junk.msm"});
  const auto moved = MakeFinding({"Z:\\other\\junk.msm", "A.1:0"});
  const auto baseline = mmcat::ParseBaseline(mmcat::FormatBaseline(
      mmcat::MakeBaseline(mmcat::JudgeFindings({first, first}, {}, {}).findings, {})));

  EXPECT_THAT(StatusesOf(mmcat::JudgeFindings({moved, first, moved}, baseline, {})),
              ElementsAre(FindingStatus::Baseline, FindingStatus::Baseline, FindingStatus::New))
      << "two are known";

  const mmcat::Judgement one = mmcat::JudgeFindings({moved, MakeFinding({"A.1:0"})}, baseline, {});
  EXPECT_THAT(StatusesOf(one), ElementsAre(FindingStatus::Baseline, FindingStatus::New));
  ASSERT_EQ(1U, one.matched.size());
  EXPECT_EQ(1, one.matched[0].count);
  ASSERT_EQ(1U, one.unmatched.size());
  EXPECT_EQ(1, one.unmatched[0].count);
}

TEST(JudgeFindingsTest, ARuleNamesACodeAndAModuleOrRow) {
  const struct {
    const char* rule;
    bool matches;
  } rules[] = {
      {"row-conflict", true},          {"row-conflict:a.1", true},
      {"row-conflict:A.1:1033", true}, {"row-conflict:B.1:0", true},
      {"row-conflict:key/2", true},    {"row-conflict:A.1:1031", false},
      {"row-conflict:A", false},       {"row", false},
  };
  for (const auto& [rule, matches] : rules) {
    const auto judgement = mmcat::JudgeFindings({MakeFinding({"A.1:1033", "B.1:0"})}, {},
                                                {mmcat::ParseIgnoreRule(rule)});
    EXPECT_EQ(matches, judgement.findings[0].status == FindingStatus::Ignored) << rule;
    EXPECT_EQ(matches ? 0U : 1U, judgement.unmatchedRules.size()) << rule;
  }
}

TEST(JudgeFindingsTest, SeverityDecidesWhichNewFindingsFail) {
  mmcat::JudgedFinding finding;
  finding.facts.severity = "warning";
  EXPECT_FALSE(mmcat::Fails(finding, mmcat::FailOn::Error));
  EXPECT_TRUE(mmcat::Fails(finding, mmcat::FailOn::Warning));
  EXPECT_TRUE(mmcat::Fails(finding, mmcat::FailOn::Note));
  EXPECT_FALSE(mmcat::Fails(finding, mmcat::FailOn::Never));
  finding.status = FindingStatus::Baseline;
  EXPECT_FALSE(mmcat::Fails(finding, mmcat::FailOn::Warning));
}

TEST(BaselineTest, AFileThatIsNoBaselineIsRefusedWithAReason) {
  const std::string start = R"({"schema": "mmcat/baseline/1", "entries": )";
  const struct {
    std::string text;
    const char* reason;
  } files[] = {
      {"", "the file is empty"},
      {std::string("\xff\xfe{\0", 4), "save the baseline as UTF-8"},
      {start + R"([{"code": "exclu)", "may be cut"},
      {"[]", "not a baseline of mmcat"},
      {R"({"schema": "mmcat/check/2", "findings": []})", "not a baseline of mmcat"},
      {R"({"schema": 1})", "not a baseline of mmcat"},
      {R"({"schema": "mmcat/baseline/2", "entries": []})", "another version"},
      {R"({"schema": "mmcat/baseline/1"})", "no \"entries\""},
      {start + "[7]}", "entry 1: it is not an object"},
      {start + R"([{"code": "a"}, {"key": "b"}]})", "entry 2: it has no \"code\""},
      {start + R"([{"code": "a", "key": 1}]})", "\"key\" is not a text"},
      {start + R"([{"code": "a", "modules": [1]}]})", "not a list of texts"},
      {start + R"([{"code": "a", "count": 0}]})", "\"count\""},
      {start + R"([{"code": "a", "count": -1}]})", "\"count\""},
      {start + R"([{"code": "a", "count": 99999999999}]})", "\"count\""},
  };
  for (const auto& [text, reason] : files) {
    try {
      mmcat::ParseBaseline(text);
      ADD_FAILURE() << text;
    } catch (const std::runtime_error& failure) {
      EXPECT_THAT(failure.what(), HasSubstr(reason)) << text;
    }
  }
}

TEST(BaselineTest, WhatWasEditedByHandIsKept) {
  const auto entries = mmcat::ParseBaseline(
      "\xEF\xBB\xBF{\"schema\": \"mmcat/baseline/1\", \"entries\": ["
      R"({"code": "row-conflict", "modules": ["B.1:0", "A.1:0"], "table": "File", "key": "Key/2"},
         {"reason": "vendor", "code": "row-conflict", "modules": ["A.1:0", "B.1:0"],
          "table": "File", "key": "Key/2", "count": 2, "comment": 7}]})");
  ASSERT_EQ(1U, entries.size());
  EXPECT_EQ(3, entries[0].count);
  const auto again = mmcat::MakeBaseline(
      mmcat::JudgeFindings({MakeFinding({"A.1:0", "B.1:0"})}, {}, {}).findings, entries);
  ASSERT_EQ(1U, again.size());
  EXPECT_EQ(1, again[0].count);
  EXPECT_EQ("vendor", again[0].reason);
}

}  // namespace

}  // namespace qm::tests
