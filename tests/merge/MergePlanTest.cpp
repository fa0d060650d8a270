#include "merge/MergePlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
      {{"", 0, ""}, std::nullopt, "it names no module"},
  };
  for (const auto& [requirement, chosen, reason] : cases) {
    SCOPED_TRACE(requirement.moduleId + ' ' + std::to_string(*requirement.language));
    const merge::Choice choice = set.Choose(requirement);
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
  for (const merge::ModuleUser& user : merge::FindUsers(set, {3})) {
    users += modules[user.module].moduleId + "-" + modules[user.through].moduleId + " ";
  }
  EXPECT_EQ("Top-Left Left-Base Right-Base Other-Top ", users);
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
    EXPECT_EQ(length - 1, merge::FindUsers(set, {0}).size());
  }
}

}  // namespace

}  // namespace qm::tests
