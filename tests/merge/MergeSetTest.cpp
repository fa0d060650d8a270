#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "merge/Findings.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MergeRules, VersionsCompareByTheirNumbers) {
  const struct {
    const char* a;
    const char* b;
    int order;
  } cases[] = {
      {"", "", 0},           {"", "0.0", 0},
      {"1", "1.0.0.0", 0},   {"1.2", "1.10", -1},
      {"2", "1.9.9.9", 1},   {"1.2.3.4.5", "1.2.3.4", 1},
      {"x", "0", 0},         {"1.x", "1.0", 0},
      {"1.2beta", "1.2", 0}, {"65536.0", "0", 1},
      {"01.002", "1.2", 0},  {"99999999999999999999", "99999999999999999998", 1},
      {".1", "0.1", 0},      {"1.", "1", 0},
      {"-1", "0", 0},
  };
  for (const auto& [a, b, order] : cases) {
    SCOPED_TRACE(std::string(a) + " and " + b);
    EXPECT_EQ(order, CompareVersionTexts(a, b));
    EXPECT_EQ(-order, CompareVersionTexts(b, a));
  }
}

TEST(MergeRules, LanguagesFitThemselvesTheirGroupAndAll) {
  const struct {
    std::optional<long> wanted;
    long language;
    bool fits;
  } cases[] = {
      {std::nullopt, 1033, true}, {0, 1033, true},  {0, 0, true},    {1033, 1033, true},
      {1033, 2057, false},        {9, 1033, true},  {9, 2057, true}, {9, 1031, false},
      {1033, 9, false},           {1033, 0, false}, {9, 0, false},   {1024, 1033, false},
  };
  for (const auto& [wanted, language, fits] : cases) {
    EXPECT_EQ(fits, LanguageFits(wanted, language)) << wanted.value_or(-1) << ' ' << language;
  }
}

TEST(MergeRules, ExclusionsHitWithinTheirBounds) {
  const struct {
    Exclusion exclusion;
    bool hits;  // module "Glyph", 1033, version 2.5
  } cases[] = {
      {{"Glyph", 1033, "", ""}, true},    {{"GLYPH", 1033, "", ""}, true},
      {{"Glyphs", 1033, "", ""}, false},  {{"Glyph", 1031, "", ""}, false},
      {{"Glyph", 0, "", ""}, true},       {{"Glyph", std::nullopt, "", ""}, true},
      {{"Glyph", 9, "", ""}, true},       {{"Glyph", -1033, "", ""}, false},
      {{"Glyph", -9, "", ""}, false},     {{"Glyph", -1031, "", ""}, true},
      {{"Glyph", 0, "2.5", ""}, true},    {{"Glyph", 0, "2.5.1", ""}, false},
      {{"Glyph", 0, "", "2.5"}, true},    {{"Glyph", 0, "", "2.4.9"}, false},
      {{"Glyph", 0, "2.0", "3.0"}, true}, {{"Glyph", 0, "3.0", "2.0"}, false},
  };
  for (const auto& [exclusion, hits] : cases) {
    EXPECT_EQ(hits, Excludes(exclusion, "Glyph", 1033, "2.5"))
        << exclusion.moduleId << ' ' << exclusion.language.value_or(99) << ' '
        << exclusion.minVersion << ' ' << exclusion.maxVersion;
  }
}

MergeModule Module(const std::string& id, const std::string& version = "1.0", long language = 1033,
                   std::vector<Requirement> requirements = {}) {
  return {id + ':' + std::to_string(language), id, language, version, std::move(requirements)};
}

std::string Names(const std::vector<MergeModule>& modules, const std::vector<size_t>& positions) {
  std::string names;
  for (const size_t position : positions) {
    names += (names.empty() ? "" : " ") + modules[position].moduleId;
  }
  return names;
}

TEST(MergeSetTest, TheHighestVersionThatFitsIsChosen) {
  const std::vector<MergeModule> modules{Module("A", "1.0", 1031),  Module("a", "1.9", 2057),
                                         Module("A", "1.10", 1033), Module("A", "1.10", 2057),
                                         Module("B", "3.0", 0),     Module("D", "1.0", 1033),
                                         Module("D", "1.0", 9)};
  const MergeSet set(modules);
  const struct {
    Requirement requirement;
    std::optional<size_t> chosen;
    const char* reason;
  } cases[] = {
      {{"A", 1031, ""}, 0, "the only one"},
      {{"A", 9, ""}, 2, "the highest version of 3, the first of 2"},
      {{"A", 2057, ""}, 3, "the highest version of 2"},
      {{"A", 0, "1.9"}, 2, "the highest version of 3, the first of 2, at least 1.9"},
      {{"A", 0, "2"}, std::nullopt, "every version is lower than 2"},
      {{"A", 1036, ""}, std::nullopt, "no module of this ID is for 1036"},
      {{"b", 0, "3"}, 4, "the only one"},
      {{"D", 9, ""}, 6, "of exactly this language"},
      {{"A", 1033, "2"}, std::nullopt, "every version for 1033 is lower than 2"},
      {{"C", 0, ""}, std::nullopt, "no module has this ID"},
  };
  for (const auto& [requirement, chosen, reason] : cases) {
    SCOPED_TRACE(requirement.moduleId + ' ' + std::to_string(*requirement.language));
    const Choice choice = set.Choose(requirement);
    EXPECT_EQ(chosen, choice.module);
    EXPECT_EQ(reason, choice.reason);
  }
}

TEST(MergeSetTest, AKeyMeansEveryLanguageUnlessItNamesOne) {
  const std::vector<MergeModule> modules{Module("A"), Module("B"), Module("a", "1.0", -1),
                                         Module("A", "2.0"), Module("")};
  const MergeSet set(modules);
  const std::pair<const char*, std::vector<size_t>> cases[] = {
      {"A", {0, 2, 3}}, {"a:", {0, 2, 3}}, {"a:1033", {0, 3}}, {"A:-1", {2}},  {"A:01033", {}},
      {"A:1033:", {}},  {"A:x", {}},       {"C:1033", {}},     {":1033", {4}}, {"", {4}},
  };
  for (const auto& [key, positions] : cases) {
    EXPECT_EQ(positions, set.ModulesOfKey(key)) << key;
  }
}

TEST(MergeSetTest, APlanPutsEveryModuleBehindWhatItNeeds) {
  const std::vector<MergeModule> modules{
      Module("Top", "1", 0, {{"Left", 0, ""}, {"Right", 0, ""}, {"Gone", 1033, "2"}}),
      Module("Left", "1", 0, {{"Base", 0, ""}}), Module("Right", "1", 0, {{"Base", 0, ""}}),
      Module("Base"), Module("Other", "1", 0, {{"Top", 0, ""}})};
  const MergeSet set(modules);
  const MergePlan plan = PlanMerge(set, {0});
  std::vector<size_t> order;
  for (const PlannedModule& planned : plan.modules) {
    order.push_back(planned.module);
  }
  EXPECT_EQ("Base Left Right Top", Names(modules, order));
  EXPECT_EQ(1u, plan.modules.front().neededBy);
  EXPECT_THAT(plan.cycles, IsEmpty());
  ASSERT_EQ(1u, plan.missing.size());
  EXPECT_EQ(0u, plan.missing.front().neededBy);
  EXPECT_EQ("Gone", plan.missing.front().requirement.moduleId);
  std::string users;
  for (const ModuleUser& user : ModulesThatNeed(set, 3)) {
    users += modules[user.module].moduleId + "-" + modules[user.through].moduleId + " ";
  }
  EXPECT_EQ("Top-Left Left-Base Right-Base Other-Top ", users);
}

TEST(MergeSetTest, CyclesOfAnyLengthAreReportedAndNotFollowed) {
  for (const size_t length : {1u, 2u, 3u, 3000u}) {
    std::vector<MergeModule> modules;
    for (size_t i = 0; i < length; ++i) {
      modules.push_back(Module("M" + std::to_string(i), "1", 0,
                               {{"M" + std::to_string((i + 1) % length), 0, ""}}));
    }
    const MergeSet set(modules);
    const MergePlan plan = PlanMerge(set, {0});
    EXPECT_EQ(length, plan.modules.size());
    ASSERT_EQ(1u, plan.cycles.size());
    EXPECT_EQ(length, plan.cycles.front().size());
    EXPECT_EQ(length - 1, ModulesThatNeed(set, 0).size());
  }
}

std::vector<std::string> FindingsOf(const std::vector<MergeModule>& modules,
                                    std::vector<CheckedModule> details,
                                    std::vector<size_t> scope = {}) {
  if (scope.empty()) {
    for (size_t i = 0; i < modules.size(); ++i) {
      scope.push_back(i);
    }
  }
  details.resize(modules.size());
  std::vector<std::string> lines;
  const MergeSet set(modules);
  for (const Finding& finding :
       CheckModules(set, details, scope, [](size_t, const std::string& directory) {
         return "[" + directory.substr(0, directory.find('.')) + "]";
       })) {
    std::string line = finding.code;
    for (const std::string& module : finding.modules) {
      line += ' ' + module;
    }
    lines.push_back(line + " | " + finding.text);
  }
  return lines;
}

CheckedModule Files(std::vector<DeliveredFile> files) {
  CheckedModule module;
  module.files = std::move(files);
  return module;
}

TEST(FindingsTest, EachKindIsFoundOnce) {
  CheckedModule excluding, broken, downloadable;
  excluding.path = "a.msm";
  excluding.exclusions = {{"B", 0, "", "1.5"}, {"B", 0, "2.0", ""}, {"A", 0, "", ""}};
  broken.path = "broken.msm";
  broken.failure = "no database";
  downloadable.needsDownload = true;
  const std::vector<MergeModule> modules{Module("A", "1", 0, {{"Gone", 1033, "2"}, {"B", 0, ""}}),
                                         Module("B", "1.0", 0, {{"A", 0, ""}}), Module(""),
                                         Module("D")};
  EXPECT_THAT(
      FindingsOf(modules, {excluding, {}, broken, downloadable}),
      ElementsAre(
          "dependency-cycle A:0 B:0 | each needs the next, and the last the first: A:0, B:0",
          "exclusion A:0 B:0 | A:0 excludes versions up to 1.5 of B:0, which has version "
          "\"1.0\"",
          "missing-dependency A:0 | A:0 needs Gone:1033, at least 2: no module has this ID",
          "needs-download D:1033 | D:1033 has to be downloaded, or files of it",
          "unreadable-module broken.msm | broken.msm cannot be read: no database"));
  EXPECT_THAT(FindingsOf(modules, {excluding, {}, broken, downloadable}, {1, 3}),
              ElementsAre(testing::StartsWith("dependency-cycle"),
                          testing::StartsWith("missing-dependency"),
                          testing::StartsWith("needs-download")));
}

TEST(FindingsTest, Doubles) {
  CheckedModule first, second;
  first.path = "1.msm";
  second.path = "2.msm";
  EXPECT_THAT(FindingsOf({Module("A", "1.0"), Module("a", "1.0"), Module("A", "2.0", 1031)},
                         {first, second}),
              ElementsAre("duplicate-key A:1033 | A:1033 is there 2 times: 1.msm (version 1.0), "
                          "2.msm (version 1.0)",
                          "several-versions A:1033 a:1033 A:1031 | A is there in 2 versions: 1.0, "
                          "2.0"));
}

TEST(FindingsTest, FilesConflictInOneFolderOnly) {
  CheckedModule nameless = Files({{"w.dll", "System.5"}}), other = nameless;
  nameless.path = "1.msm";
  other.path = "2.msm";
  EXPECT_THAT(FindingsOf({Module(""), Module("")}, {nameless, other}),
              ElementsAre("file-conflict 1.msm 2.msm | w.dll goes to [System] from 1.msm and from "
                          "2.msm"));
  EXPECT_THAT(
      FindingsOf(
          {Module("A"), Module("B"), Module("C"), Module("A", "1.0", 1031)},
          {Files({{"x.dll", "System.1"}, {"y.dll", "System.1"}, {"z.dll", "System.1"}}),
           Files({{"X.DLL", "SYSTEM.2"}, {"y.dll", "Windows.2"}}), Files({{"q.dll", "System.3"}}),
           Files({{"z.dll", "System.4"}, {"x.dll", "System.4"}})}),
      ElementsAre("file-conflict A:1033 B:1033 | x.dll goes to [System] from A:1033 and "
                  "from B:1033"));
}

TEST(FindingsTest, IndexEntriesOfUnknownModules) {
  const std::vector<MergeModule> modules{Module("A")};
  const auto findings = CheckIndexes(MergeSet(modules), {{"modules.ini", "A:1033", "a:1033"},
                                                         {"FilesToModules.ini", "a.dll", "A:"},
                                                         {"FilesToModules.ini", "x.dll", "B:0"},
                                                         {"FilesToModules.ini", "y.dll", "B:0"}});
  ASSERT_EQ(1u, findings.size());
  EXPECT_EQ("FilesToModules.ini names B:0 for \"x.dll\" and 1 more, and no folder has it",
            findings.front().text);
}

}  // namespace
