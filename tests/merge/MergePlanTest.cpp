#include "merge/MergePlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "merge/ModuleUsers.h"
#include "merge/PlanSolver.h"
#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

using testing::IsEmpty;

std::string Names(const std::vector<merge::Module>& modules, const std::vector<size_t>& positions) {
  std::string names;
  for (const size_t position : positions) {
    names += (names.empty() ? "" : " ") + modules[position].moduleId;
  }
  return names;
}

TEST(MergePlanTest, TheHighestVersionThatFitsIsChosen) {
  const std::vector<merge::Module> modules{Module("A", "1.0", 1031),  Module("a", "1.9", 2057),
                                           Module("A", "1.10", 1033), Module("A", "1.10", 2057),
                                           Module("B", "3.0", 0),     Module("D", "1.0", 1033),
                                           Module("D", "1.0", 9),     Module("", "9.0", 0)};
  const merge::ModuleIndex set(modules);
  const struct {
    merge::Requirement requirement;
    std::optional<size_t> chosen;
    const char* reason;
  } cases[] = {
      {{"A", 1031, ""}, 0, "the only candidate"},
      {{"A", 9, ""}, 2, "the highest version of 3, the first of 2"},
      {{"A", 2057, ""}, 3, "the highest version of 2"},
      {{"A", 0, "1.9"}, 2, "the highest version of 3, the first of 2, at least 1.9"},
      {{"A", 0, "2"}, std::nullopt, "every version is lower than 2"},
      {{"A", 1036, ""}, std::nullopt, "no module of this ID is for 1036"},
      {{"b", 0, "3"}, 4, "the only candidate"},
      {{"D", 9, ""}, 6, "of exactly this language"},
      {{"A", 1033, "2"}, std::nullopt, "every version for 1033 is lower than 2"},
      {{"C", 0, ""}, std::nullopt, "no module has this ID"},
      {{"", 0, ""}, std::nullopt, "it names no module"},
  };
  const merge::Module user = Module("User", "1", 0);
  for (const auto& [requirement, chosen, reason] : cases) {
    SCOPED_TRACE(requirement.moduleId + ' ' + std::to_string(*requirement.language));
    const merge::Choice choice = set.Choose(requirement, user);
    EXPECT_EQ(chosen, choice.module);
    EXPECT_EQ(reason, choice.reason);
  }
}

TEST(MergePlanTest, AKeyMeansEveryLanguageUnlessItNamesOne) {
  const std::vector<merge::Module> modules{Module("A"),
                                           Module("B"),
                                           Module("a", "1.0", -1),
                                           Module("A", "2.0"),
                                           Module(""),
                                           Module("A:1033", "1.0", 0),
                                           Module("C:D", "1.0", 9)};
  const merge::ModuleIndex set(modules);
  const std::pair<const char*, std::vector<size_t>> cases[] = {
      {"A", {0, 2, 3}}, {"a:", {0, 2, 3}}, {"a:1033", {0, 3, 5}}, {"A:-1", {2}},  {"A:01033", {}},
      {"A:1033:", {5}}, {"A:x", {}},       {"C:1033", {}},        {":1033", {4}}, {"", {4}},
      {"c:d", {6}},     {"C:D:9", {6}},    {"C:D:1033", {}},      {"C", {}},      {":", {4}},
  };
  for (const auto& [key, positions] : cases) {
    EXPECT_EQ(positions, set.FindByKey(key)) << key;
  }
}

TEST(MergePlanTest, APlanListsEveryModuleAfterWhatItNeeds) {
  const std::vector<merge::Module> modules{
      Module("Top", "1", 0, {{"Left", 0, ""}, {"Right", 0, ""}, {"Gone", 1033, "2"}}),
      Module("Left", "1", 0, {{"Base", 0, ""}}), Module("Right", "1", 0, {{"Base", 0, ""}}),
      Module("Base"), Module("Other", "1", 0, {{"Top", 0, ""}})};
  const merge::ModuleIndex set(modules);
  const merge::MergePlan plan = merge::PlanMerge(set, {0});
  std::vector<size_t> order;
  for (const merge::PlannedModule& planned : plan.modules) {
    order.push_back(planned.module);
  }
  EXPECT_EQ("Base Left Right Top", Names(modules, order));
  EXPECT_EQ(1u, plan.modules.front().neededBy);
  EXPECT_THAT(plan.cycles, IsEmpty());
  ASSERT_EQ(1u, plan.missing.size());
  EXPECT_EQ(0u, plan.missing.front().neededBy);
  EXPECT_EQ("Gone", plan.missing.front().requirement.moduleId);
  std::string users;
  for (const merge::ModuleUser& user : merge::ModuleUsers(set).Find({3})) {
    users += modules[user.module].moduleId + "-" + modules[user.through].moduleId + " ";
  }
  EXPECT_EQ("Top-Left Left-Base Right-Base Other-Top ", users);
}

TEST(MergePlanTest, APlanSatisfiesAllRequirementsWithTheModulesThatFitBest) {
  const auto excluding = [](merge::Module module, const char* id, const char* minVersion) {
    module.exclusions.push_back({id, std::nullopt, minVersion, ""});
    return module;
  };
  const auto carrying = [](merge::Module module, merge::ModuleSignature carried) {
    module.carried.push_back(std::move(carried));
    return module;
  };
  const auto onPlatform = [](merge::Module module, const char* platform) {
    module.platform = platform;
    return module;
  };
  const struct {
    const char* name;
    std::vector<merge::Module> modules;
    std::string plan;  ///< key, version and reason of each module that was not asked for
  } cases[] = {
      {"one version of a base that satisfies two modules",
       {Module("P", "1", 0, {{"L", 0, ""}, {"R", 0, ""}}), Module("L", "1", 0, {{"B", 0, ""}}),
        Module("R", "1", 0, {{"B", 1031, ""}}), Module("B", "2", 1033), Module("B", "1", 1031)},
       "B:1031 1 the only candidate for all that need it\n"
       "L:0 1 the only candidate\nR:0 1 the only candidate\n"},
      {"the language of the product before a higher version",
       {Module("P", "1", 1033, {{"B", 0, ""}}), Module("B", "3", 1031), Module("B", "1", 1033),
        Module("B", "2", 1033)},
       "B:1033 2 of exactly this language, the highest version of 2\n"},
      {"a neutral module before one of another language",
       {Module("P", "1", 1033, {{"B", std::nullopt, "1"}}), Module("B", "3", 1031),
        Module("B", "2", 0)},
       "B:0 2 language-neutral, at least 1\n"},
      {"the language of the product behind a neutral module",
       {Module("P", "1", 1033, {{"N", 0, ""}}), Module("N", "1", 0, {{"B", 0, ""}}),
        Module("B", "1", 1033), Module("B", "2", 1031)},
       "B:1033 1 of exactly this language\nN:0 1 the only candidate\n"},
      {"the language that a neutral module requires behind a product of another one",
       {Module("P", "1", 1033, {{"N", 0, ""}}), Module("N", "1", 0, {{"B", 1031, ""}}),
        Module("B", "2", 1033), Module("B", "1", 1031)},
       "B:1031 1 the only candidate\nN:0 1 the only candidate\n"},
      {"a lower version where the higher one is excluded",
       {excluding(Module("P", "1", 0, {{"B", 0, ""}}), "B", "2"), Module("B", "2", 0),
        Module("B", "1", 0)},
       "B:0 1 rather than B:0 2, which cannot be merged with P:0\n"},
      {"a lower version where the higher one excludes a module",
       {Module("P", "1", 0, {{"B", 0, ""}}), excluding(Module("B", "2", 0), "P", ""),
        Module("B", "1", 0)},
       "B:0 1 rather than B:0 2, which cannot be merged with P:0\n"},
      {"a lower version that lacks nothing",
       {Module("P", "1", 0, {{"B", 0, ""}}), Module("B", "2", 0, {{"Gone", 0, ""}}),
        Module("B", "1", 0)},
       "B:0 1 rather than B:0 2, which needs a module that is missing\n"},
      {"a module of the same platform",
       {onPlatform(Module("P", "1", 0, {{"B", 0, ""}}), "Intel"),
        onPlatform(Module("B", "2", 0), "x64"), onPlatform(Module("B", "1", 0), "Intel")},
       "B:0 1 the only candidate\n"},
      {"a planned module that carries a lower version than there is",
       {Module("P", "1", 0, {{"A", 0, ""}, {"C", 0, ""}}),
        carrying(Module("A", "1", 0), {"B", 0, "2"}), Module("B", "3", 0),
        Module("C", "1", 0, {{"B", 0, "1.5"}})},
       "A:0 1 the only candidate\nC:0 1 the only candidate\n"},
      {"a carrier that is needed for nothing else",
       {Module("P", "1", 0, {{"B", 0, "2"}}), Module("B", "1", 0),
        carrying(Module("A", "1", 0), {"B", 0, "2"})},
       "A:0 1 carries B:0 2, the only candidate\n"},
      {"a module rather than one that carries it in a higher version",
       {Module("P", "1", 0, {{"B", 0, ""}}), Module("B", "1", 1031, {{"D", 0, ""}}), Module("D"),
        carrying(Module("A", "1", 0), {"B", 0, "2"})},
       "D:1033 1.0 the only candidate\nB:1031 1 a module of its own\n"},
      {"a planned carrier of another platform",
       {onPlatform(Module("P", "1", 0, {{"B", 0, ""}, {"A", 0, ""}}), "Intel"),
        onPlatform(carrying(Module("A", "1", 0), {"B", 0, "2"}), "x64"),
        onPlatform(Module("B", "1", 0), "Intel")},
       "A:0 1 carries B:0 2, the only candidate for all that need it\n"},
      {"a module rather than a carrier of another platform that is needed for nothing else",
       {onPlatform(Module("P", "1", 0, {{"B", 0, ""}}), "Intel"),
        onPlatform(carrying(Module("A", "1", 0), {"B", 0, "2"}), "x64"),
        onPlatform(Module("B", "1", 0), "Intel")},
       "B:0 1 a module of its own\n"},
      {"the language of what is carried",
       {Module("P", "1", 1033, {{"B", 0, ""}}), carrying(Module("A", "1", 0), {"B", 1033, "2"}),
        carrying(Module("C", "1", 0), {"B", 0, "2"})},
       "A:0 1 carries B:1033 2, of exactly this language\n"},
      {"a carrier rather than an excluded module",
       {excluding(Module("P", "1", 0, {{"B", 0, ""}}), "B", "2"), Module("B", "2", 0),
        carrying(Module("A", "1", 0), {"B", 0, "1"}), carrying(Module("E", "1", 0), {"B", 0, "3"})},
       "A:0 1 carries B:0 1, rather than B:0 2, which cannot be merged with P:0\n"},
  };
  for (const auto& [name, modules, expected] : cases) {
    SCOPED_TRACE(name);
    const merge::MergePlan plan = merge::PlanMerge(merge::ModuleIndex(modules), {0});
    std::string text;
    for (const merge::PlannedModule& planned : plan.modules) {
      if (planned.neededBy) {
        const merge::Module& module = modules[planned.module];
        text += module.key + ' ' + module.version + ' ' + planned.reason + '\n';
      }
    }
    EXPECT_EQ(expected, text);
    EXPECT_TRUE(plan.isProven);
  }
}

TEST(MergePlanTest, AlternativesSatisfyEverythingThatAModuleIsNeededFor) {
  const std::vector<merge::Module> modules{Module("P", "1", 0, {{"B", 0, ""}, {"B", 0, "2"}}),
                                           Module("B", "1", 0), Module("B", "2", 0),
                                           Module("B", "3", 0), Module("B", "3", 0)};
  const merge::MergePlan plan = merge::PlanMerge(merge::ModuleIndex(modules), {0});
  EXPECT_EQ(3u, plan.modules.front().module);
  EXPECT_EQ("the highest version of 3, the first of 2", plan.modules.front().reason);
  EXPECT_EQ((std::vector<size_t>{4, 2}), plan.modules.front().alternatives);
}

TEST(MergePlanTest, ASearchThatEndsAtItsBoundSaysSo) {
  std::vector<merge::Module> modules;
  for (int i = 0; i < 60; ++i) {
    for (int version = 1; version <= 2; ++version) {
      modules.push_back(Module("M" + std::to_string(i), std::to_string(version), 0,
                               {{"M" + std::to_string((i + version) % 60), 0, ""},
                                {"M" + std::to_string((i * 7 + version) % 60), 0, ""}}));
      modules.back().exclusions.push_back({"M" + std::to_string((i * 11 + version) % 60),
                                           std::nullopt, version == 1 ? "2" : "",
                                           version == 1 ? "" : "1"});
    }
  }
  const merge::ModuleIndex set(modules);
  merge::PlanOptions options;
  options.maxSteps = 1000;
  const merge::MergePlan plan = merge::PlanMerge(set, {0}, options);
  EXPECT_FALSE(plan.isProven);
  EXPECT_THAT(plan.missing, IsEmpty());
}

TEST(MergePlanTest, ACycleIsReportedOnceWhateverManyRowsCloseIt) {
  const std::vector<merge::Module> modules{
      Module("A", "1", 0, {{"B", 0, ""}}),
      Module("B", "1", 0, {{"A", 0, ""}, {"A", 9, ""}, {"A", std::nullopt, "0.5"}})};
  EXPECT_EQ(1u, merge::PlanMerge(merge::ModuleIndex(modules), {0, 1}).cycles.size());

  std::vector<merge::Module> all;
  all.reserve(600);
  for (int i = 0; i < 600; ++i) {
    std::vector<merge::Requirement> others;
    others.reserve(600);
    for (int j = 0; j < 600; ++j) {
      others.push_back({"M" + std::to_string(j), 0, ""});
    }
    all.push_back(Module("M" + std::to_string(i), "1", 0, others));
  }
  size_t count = 0;
  for (const auto& cycle : merge::PlanMerge(merge::ModuleIndex(all), {0}).cycles) {
    count += cycle.size();
  }
  EXPECT_LT(count, 101000u);
}

TEST(MergePlanTest, LongChainsOfChoicesArePlanned) {
  constexpr int kLength = 3000;
  std::vector<merge::Module> modules;
  for (int i = 0; i < kLength; ++i) {
    for (const char* const version : {"1", "2", "2"}) {
      modules.push_back(
          Module("M" + std::to_string(i), version, 0, {{"M" + std::to_string(i + 1), 0, ""}}));
    }
  }
  modules.push_back(Module("M" + std::to_string(kLength), "1", 0));
  modules.back().exclusions.push_back({"M1500", std::nullopt, "2", ""});
  const merge::MergePlan plan = merge::PlanMerge(merge::ModuleIndex(modules), {0});
  EXPECT_TRUE(plan.isProven);
  EXPECT_EQ(kLength + 1u, plan.modules.size());
  EXPECT_TRUE(std::any_of(plan.modules.begin(), plan.modules.end(),
                          [](const merge::PlannedModule& one) { return one.module == 4500; }));
}

/// A set in which every requirement has several candidates, and the best ones suit one another.
struct LargeSet {
  const char* what;
  std::vector<merge::Module> modules;  ///< the first one is wanted
  size_t planned;
  size_t candidates;  ///< of all different requirements
};

std::vector<LargeSet> MakeLargeSets() {
  constexpr size_t kCount = 3000;
  const auto nameOf = [](size_t number) { return "M" + std::to_string(number % kCount); };
  LargeSet mutual{"modules that all need one another", {}, kCount, 2 * kCount};
  for (size_t i = 0; i < kCount; ++i) {
    for (const char* const version : {"2", "1"}) {
      mutual.modules.push_back(Module(nameOf(i), version, 0));
      for (size_t step = 1; step <= 20; ++step) {
        mutual.modules.back().requirements.push_back({nameOf(i + step * step), 0, ""});
      }
    }
  }
  constexpr size_t kNeeds = 10000;
  LargeSet needy{"requirements of one module", {Module("A", "1", 0)}, kNeeds + 1, 2 * kNeeds};
  LargeSet versions{"versions of one module", {Module("A", "1", 0)}, 101, 101 * kCount};
  for (size_t i = 0; i < kNeeds; ++i) {
    needy.modules.front().requirements.push_back({"B" + std::to_string(i), 0, "1"});
    needy.modules.push_back(Module("B" + std::to_string(i), "1", 0));
    needy.modules.push_back(Module("B" + std::to_string(i), "2", 0));
  }
  versions.modules.front().requirements.push_back({"B", 0, "7"});
  for (int i = 0; i < 99; ++i) {
    versions.modules.front().requirements.push_back({"C" + std::to_string(i), 0, ""});
    versions.modules.push_back(
        Module("C" + std::to_string(i), "1", 0, {{"B", 0, std::to_string(20 * i)}}));
  }
  for (size_t version = 1; version <= kCount; ++version) {
    versions.modules.push_back(Module("B", std::to_string(version), 0));
  }
  LargeSet carried = needy;
  carried.what = "requirements that a carrier satisfies as well";
  carried.candidates += kNeeds;
  carried.modules.push_back(Module("Carrier", "1", 0));
  for (size_t i = 0; i < kNeeds; ++i) {
    carried.modules.back().carried.push_back({"B" + std::to_string(i), 0, "3"});
  }
  return {std::move(mutual), std::move(needy), std::move(versions), std::move(carried)};
}

TEST(MergePlanTest, LargeSetsTakeAFewStepsForEachCandidate) {
  for (const LargeSet& large : MakeLargeSets()) {
    SCOPED_TRACE(large.what);
    const merge::ModuleIndex set(large.modules);
    const merge::MergePlan plan = merge::PlanMerge(set, {0});
    EXPECT_TRUE(plan.isProven);
    EXPECT_THAT(plan.missing, IsEmpty());
    EXPECT_EQ(large.planned, plan.modules.size());
    for (const merge::PlannedModule& planned : plan.modules) {
      EXPECT_EQ(0u, set.RankOf(planned.module).higherVersions);
    }
    size_t requirements = 0;
    for (const merge::Module& module : large.modules) {
      requirements += module.requirements.size();
    }
    merge::PlanSolver solver(set, {0}, merge::PlanProblem::Extent::Plan, {});
    solver.Solve({solver.Problem().FindModule(0)});
    EXPECT_LE(solver.Steps(), 6 * (large.candidates + requirements));
  }
}

TEST(MergePlanTest, CyclesOfAnyLengthAreReportedAndNotFollowed) {
  for (const size_t length : {2u, 3u, 3000u}) {
    std::vector<merge::Module> modules;
    for (size_t i = 0; i < length; ++i) {
      modules.push_back(Module("M" + std::to_string(i), "1", 0,
                               {{"M" + std::to_string((i + 1) % length), 0, ""}}));
    }
    const merge::ModuleIndex set(modules);
    const merge::MergePlan plan = merge::PlanMerge(set, {0});
    EXPECT_EQ(length, plan.modules.size());
    ASSERT_EQ(1u, plan.cycles.size());
    EXPECT_EQ(length, plan.cycles.front().size());
    EXPECT_EQ(length - 1, merge::ModuleUsers(set).Find({0}).size());
  }
}

}  // namespace

}  // namespace qm::tests
