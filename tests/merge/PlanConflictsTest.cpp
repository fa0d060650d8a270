#include "merge/PlanConflicts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "merge/PlanSolver.h"
#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

merge::Module Excluding(merge::Module module, std::vector<merge::Exclusion> exclusions) {
  module.exclusions = std::move(exclusions);
  return module;
}

merge::Module Carrying(merge::Module module, std::vector<merge::ModuleSignature> carried) {
  module.carried = std::move(carried);
  return module;
}

/// Returns a conflict as text: what it is, its chains and its fixes, one a line.
std::string Describe(const std::vector<merge::Module>& modules,
                     const merge::PlanConflict& conflict) {
  std::string text = conflict.text + '\n';
  for (const std::vector<size_t>& chain : conflict.chains) {
    for (const size_t module : chain) {
      text += (module == chain.front() ? "" : " -> ") + modules[module].moduleId;
    }
    text += '\n';
  }
  for (const merge::PlanFix& fix : conflict.fixes) {
    text += "fix: " + fix.text + '\n';
  }
  return text;
}

TEST(PlanConflictsTest, AConflictHasItsChainsAndFixes) {
  const struct {
    const char* name;
    std::vector<merge::Module> modules;
    std::vector<size_t> wanted;
    std::vector<std::string> conflicts;
  } cases[] = {
      {"a choice without conflict",
       {Module("P", "1", 0, {{"Y", 0, ""}, {"Z", 0, ""}}), Module("Y", "1", 0), Module("Y", "2", 0),
        Excluding(Module("Z", "1", 0), {{"Y", 0, "2", ""}})},
       {0},
       {}},
      {"an exclusion between what two wanted modules need",
       {Module("P", "1", 0, {{"Y", 0, "2"}}), Module("Q", "1", 0, {{"Z", 0, ""}}),
        Module("Y", "2", 0), Excluding(Module("Z", "1", 0), {{"Y", 0, "2", "3"}}),
        Module("Other", "1", 0)},
       {0, 4, 1},
       {"Z:0 excludes versions from 2 to 3 of Y:0, which has version 2\n"
        "P -> Y\nQ -> Z\n"
        "fix: without P:0 the rest can be merged\n"
        "fix: without Q:0 the rest can be merged\n"
        "fix: a module Y that Z:0 does not exclude is missing\n"}},
      {"dropping a module allows a higher version",
       {Module("P", "1", 0, {{"Y", 0, ""}}), Excluding(Module("Q", "1", 0), {{"Y", 0, "", ""}}),
        Module("Y", "2", 0), Module("Y", "1", 0)},
       {0, 1},
       {"Q:0 excludes every version of Y:0, which has version 2; with Y:0 1 instead of Y:0 2, "
        "Q:0 excludes every version of Y:0, which has version 1\n"
        "Q\nP -> Y\n"
        "fix: without P:0 the rest can be merged\n"
        "fix: without Q:0 the rest can be merged\n"}},
      {"requirements that only excluded modules can satisfy",
       {Module("P", "1", 1033, {{"Y", 1033, "2"}, {"Z", 0, ""}}), Module("Y", "2"),
        Excluding(Module("Z", "1", 0), {{"Y", -1031, "2.0", "3"}, {"y", 9, "3", ""}})},
       {0},
       {"Z:0 excludes versions from 2.0 to 3 of Y:1033, which has version 2\n"
        "P -> Y\nP -> Z\n"}},
      {"a requirement of a missing module that is excluded",
       {Module("P", "1", 0, {{"Gone", 0, "1"}}),
        Excluding(Module("Q", "1", 0), {{"Gone", 0, "", ""}})},
       {0, 1},
       {"P:0 needs Gone, at least 1: no module has this ID\nP\n"
        "fix: without P:0 the rest can be merged\n"}},
      {"an exclusion of a carried module",
       {Module("P", "1", 0, {{"A", 0, ""}}), Carrying(Module("A", "1", 0), {{"B", 0, "2"}}),
        Excluding(Module("Q", "1", 0), {{"B", 0, "", ""}})},
       {0, 2},
       {"Q:0 excludes every version of B:0 2, which A:0 carries\nQ\nP -> A\n"
        "fix: without P:0 the rest can be merged\n"
        "fix: without Q:0 the rest can be merged\n"}},
      {"three wanted modules of which any two can be merged",
       {Module("W0", "1", 0, {{"P0", 0, ""}}), Module("W1", "1", 0, {{"N", 0, ""}}),
        Module("W2", "1", 0, {{"P2", 0, ""}}), Module("Other"),
        Excluding(Module("P0", "1", 0), {{"P1", 0, "1", "1"}, {"P2", 0, "1", "1"}}),
        Excluding(Module("P0", "2", 0), {{"P1", 0, "2", "2"}, {"P2", 0, "2", "2"}}),
        Excluding(Module("P1", "1", 0), {{"P2", 0, "1", "1"}}),
        Excluding(Module("P1", "2", 0), {{"P2", 0, "2", "2"}}), Module("P2", "1", 0),
        Module("P2", "2", 0), Module("N", "1", 0, {{"P1", 0, ""}})},
       {0, 1, 2, 3},
       {"P0:0 excludes versions from 2 to 2 of P1:0, which has version 2; with P2:0 2 instead of "
        "P2:0 1, P0:0 excludes versions from 2 to 2 of P2:0, which has version 2; with P1:0 1 "
        "instead of P1:0 2, P0:0 excludes versions from 2 to 2 of P2:0, which has version 2\n"
        "W0 -> P0\nW1 -> N -> P1\nW2 -> P2\n"
        "fix: without W0:0 the rest can be merged, with P2:0 2\n"
        "fix: without W1:0 the rest can be merged\n"
        "fix: without W2:0 the rest can be merged\n"
        "fix: a module P1 that P0:0 does not exclude is missing\n"}},
      {"two independent conflicts",
       {Module("P", "1", 0, {{"Y", 1031, "2"}, {"Gone", 0, ""}}), Module("Y", "1", 0)},
       {0},
       {"P:0 needs Y:1031, at least 2: no module of this ID is for 1031\nP\n"
        "fix: a module Y for 1031 with version 2 or higher is missing\n",
        "P:0 needs Gone: no module has this ID\nP\nfix: a module Gone is missing\n"}},
  };
  for (const auto& [name, modules, wanted, conflicts] : cases) {
    SCOPED_TRACE(name);
    std::vector<std::string> texts;
    for (const merge::PlanConflict& conflict :
         merge::FindPlanConflicts(merge::ModuleIndex(modules), wanted)) {
      texts.push_back(Describe(modules, conflict));
      EXPECT_TRUE(conflict.isMinimal);
    }
    EXPECT_EQ(conflicts, texts);
  }
}

TEST(PlanConflictsTest, ASearchAmongThousandsOfModulesEndsAtItsBound) {
  constexpr size_t kCount = 3000;
  std::vector<merge::Module> modules;
  std::vector<size_t> wanted;
  for (size_t i = 0; i < kCount; ++i) {
    modules.push_back(Module("M" + std::to_string(i), "1", 0));
    for (size_t step = 1; step <= 10; ++step) {
      modules.back().exclusions.push_back(
          {"M" + std::to_string((i + step) % kCount), std::nullopt, "", ""});
    }
    wanted.push_back(i);
  }
  const merge::ModuleIndex set(modules);
  EXPECT_EQ(merge::kMaxPlanConflicts, merge::FindPlanConflicts(set, wanted).size());

  // Whatever is planned, there is a new objection.
  std::uint64_t checked = 0;
  size_t asked = 0;
  merge::PlanOptions options;
  options.findObjections = [&](const std::vector<size_t>& plan) {
    checked += plan.size();
    ++asked;
    std::vector<merge::Objection> objections;
    if (plan.size() > asked + 20) {
      objections.push_back({{plan.front(), plan[asked + 20]}, "both"});
    }
    return objections;
  };
  const std::vector<merge::PlanConflict> conflicts = merge::FindPlanConflicts(set, wanted, options);
  ASSERT_FALSE(conflicts.empty());
  EXPECT_FALSE(conflicts.back().isMinimal);
  constexpr std::uint64_t kMaxChecked =
      merge::kMaxConflictSteps / merge::PlanSolver::kStepsOfCheckedModule;
  EXPECT_LE(checked, kMaxChecked + 5 * kCount);
}

}  // namespace

}  // namespace qm::tests
