#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "merge/PlanConflicts.h"
#include "tests/support/MergeModules.h"

namespace qm::tests {

namespace {

/// A small set with objections, from a seed.
struct RandomSet {
  std::vector<merge::Module> modules;
  std::vector<size_t> wanted;
  std::vector<std::vector<size_t>> objections;

  explicit RandomSet(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    const long languages[] = {0, 9, 1031, 1033};
    const char* const ids[] = {"A", "B", "C", "D"};
    const size_t count = 6 + below(3);
    for (size_t i = 0; i < count; ++i) {
      merge::Module module =
          Module(ids[below(4)], std::to_string(1 + below(3)), languages[below(4)]);
      module.platform = below(4) == 0 ? "x64" : "Intel";
      for (unsigned row = below(4); row > 0; --row) {
        module.requirements.push_back({below(12) == 0 ? "Gone" : ids[below(4)],
                                       below(3) == 0 ? languages[below(4)] : 0,
                                       below(2) == 0 ? std::to_string(1 + below(3)) : ""});
      }
      if (below(3) == 0) {
        module.carried.push_back(
            {ids[below(4)], languages[below(4)], std::to_string(1 + below(3))});
      }
      if (below(3) == 0) {
        const std::string lowest = below(2) == 0 ? "2" : "";
        module.exclusions.push_back(
            {ids[below(4)], std::nullopt, lowest, lowest.empty() ? "2" : ""});
      }
      modules.push_back(module);
    }
    wanted.push_back(below(static_cast<unsigned>(count)));
    if (const size_t second = below(static_cast<unsigned>(count)); second != wanted.front()) {
      wanted.push_back(second);
    }
    for (unsigned i = below(4); i > 0; --i) {
      std::vector<size_t> together;
      for (unsigned size = 1 + below(3); size > 0; --size) {
        together.push_back(below(static_cast<unsigned>(count)));
      }
      std::sort(together.begin(), together.end());
      together.erase(std::unique(together.begin(), together.end()), together.end());
      objections.push_back(together);
    }
    std::sort(objections.begin(), objections.end());
    objections.erase(std::unique(objections.begin(), objections.end()), objections.end());
  }
};

/// Returns the language in which a module needs others.
long LanguageOf(const RandomSet& set, const merge::Module& module) {
  std::vector<long> languages;
  for (const size_t wanted : set.wanted) {
    if (set.modules[wanted].language != 0) {
      languages.push_back(set.modules[wanted].language);
    }
  }
  const bool isShared =
      !languages.empty() && std::count(languages.begin(), languages.end(), languages.front()) ==
                                static_cast<std::ptrdiff_t>(languages.size());
  return module.language == 0 && isShared ? languages.front() : module.language;
}

using Cost = std::array<long, 9>;

/// Returns by position whether requirements lead from a wanted module to a module by its own ID.
std::vector<bool> FindLedTo(const RandomSet& set, const merge::ModuleIndex& index) {
  std::vector<bool> isLedTo(set.modules.size());
  std::vector<size_t> queue = set.wanted;
  for (size_t next = 0; next < queue.size(); ++next) {
    const merge::Module& module = set.modules[queue[next]];
    if (isLedTo[queue[next]]) {
      continue;
    }
    isLedTo[queue[next]] = true;
    for (const merge::Requirement& requirement : module.requirements) {
      if (merge::IsMetWithin(module, requirement)) {
        continue;
      }
      for (const merge::Candidate& candidate : index.FindCandidates(requirement, module)) {
        if (!candidate.carried) {
          queue.push_back(candidate.module);
        }
      }
    }
  }
  return isLedTo;
}

/// Returns what a plan costs by the goals that PlanMerge documents; std::nullopt if it lacks a
/// module that the set has.
std::optional<Cost> CostOf(const RandomSet& set, const merge::ModuleIndex& index,
                           const std::vector<bool>& plan) {
  Cost cost{};
  const auto& modules = set.modules;
  std::vector<std::vector<size_t>> objections = set.objections;
  const std::vector<bool> isLedTo = FindLedTo(set, index);
  for (size_t i = 0; i < modules.size(); ++i) {
    if (!plan[i]) {
      continue;
    }
    std::vector<std::string> needs;
    for (const merge::Requirement& requirement : modules[i].requirements) {
      if (merge::IsMetWithin(modules[i], requirement)) {
        continue;
      }
      const auto candidates =
          index.FindCandidates(requirement, modules[i], LanguageOf(set, modules[i]));
      cost[0] += candidates.empty() ? 1 : 0;
      const std::string text = requirement.moduleId + '/' + requirement.version + '/' +
                               std::to_string(*requirement.language);
      if (candidates.empty() || std::find(needs.begin(), needs.end(), text) != needs.end()) {
        continue;
      }
      needs.push_back(text);
      const auto taken = std::find_if(candidates.begin(), candidates.end(),
                                      [&](const auto& one) { return plan[one.module]; });
      if (taken == candidates.end()) {
        return std::nullopt;
      }
      const bool isThereAnyway = taken->carried && isLedTo[taken->module];
      cost[1] += taken->platform == merge::PlatformMatch::Wrong && !isThereAnyway ? 1 : 0;
      if (taken->carried) {
        ++cost[8];
      } else {
        cost[4] += taken->platform == merge::PlatformMatch::Other ? 1 : 0;
        cost[5] += static_cast<long>(taken->language);
      }
    }
    cost[3] += isLedTo[i] ? 0 : 1;
    std::vector<std::string> higher;
    bool isFirst = true;
    for (size_t j = 0; j < modules.size(); ++j) {
      const bool isSameId = modules[i].moduleId == modules[j].moduleId;
      const bool isHigher = isSameId && modules[j].version > modules[i].version;
      isFirst = isFirst && !(isSameId && j < i && plan[j]);
      cost[8] +=
          isHigher || (isSameId && j < i && modules[j].version == modules[i].version) ? 1 : 0;
      if (isHigher && std::find(higher.begin(), higher.end(), modules[j].version) == higher.end()) {
        higher.push_back(modules[j].version);
      }
      for (const merge::Exclusion& row : modules[i].exclusions) {
        const auto excludes = [&](const merge::ModuleSignature& one) {
          return merge::Excludes(row, one.moduleId, *one.language, one.version);
        };
        const std::vector<merge::ModuleSignature>& carried = modules[j].carried;
        if (i != j && plan[j] &&
            (excludes({modules[j].moduleId, modules[j].language, modules[j].version}) ||
             std::any_of(carried.begin(), carried.end(), excludes))) {
          objections.push_back({std::min(i, j), std::max(i, j)});
        }
      }
    }
    cost[2] += isFirst ? 0 : 1;
    cost[6] += static_cast<long>(higher.size());
    ++cost[7];
  }
  std::sort(objections.begin(), objections.end());
  objections.erase(std::unique(objections.begin(), objections.end()), objections.end());
  cost[1] += std::count_if(objections.begin(), objections.end(), [&](const auto& together) {
    return std::all_of(together.begin(), together.end(), [&](size_t at) { return plan[at]; });
  });
  return cost;
}

merge::FindObjections Objecting(const std::vector<std::vector<size_t>>& objections) {
  return [&objections](const std::vector<size_t>& plan) {
    std::vector<merge::Objection> found;
    for (const std::vector<size_t>& together : objections) {
      if (std::includes(plan.begin(), plan.end(), together.begin(), together.end())) {
        found.push_back({together, ""});
      }
    }
    return found;
  };
}

TEST(PlanSearchTest, NoPlanThatAnExhaustiveSearchFindsIsBetterAndFixesHold) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(seed);
    const RandomSet set(seed);
    const merge::ModuleIndex index(set.modules);
    merge::PlanOptions options;
    options.findObjections = Objecting(set.objections);
    const merge::MergePlan plan = merge::PlanMerge(index, set.wanted, options);
    std::vector<bool> planned(set.modules.size());
    for (const merge::PlannedModule& module : plan.modules) {
      planned[module.module] = true;
    }
    std::optional<Cost> best;
    for (unsigned bits = 0; bits < 1U << set.modules.size(); ++bits) {
      std::vector<bool> other(set.modules.size());
      for (size_t i = 0; i < other.size(); ++i) {
        other[i] = (bits >> i & 1U) != 0;
      }
      if (std::all_of(set.wanted.begin(), set.wanted.end(), [&](size_t at) { return other[at]; })) {
        const std::optional<Cost> cost = CostOf(set, index, other);
        best = cost && (!best || *cost < *best) ? cost : best;
      }
    }
    ASSERT_TRUE(plan.isProven);
    ASSERT_EQ(*best, CostOf(set, index, planned));
    const bool isClean = (*best)[0] == 0 && (*best)[1] == 0;
    const auto conflicts = merge::FindPlanConflicts(index, set.wanted, options);
    ASSERT_TRUE(conflicts.empty() || !isClean);
    ASSERT_TRUE((*best)[0] == 0 || !conflicts.empty());
    for (const merge::PlanConflict& conflict : conflicts) {
      for (const merge::PlanFix& fix : conflict.fixes) {
        std::vector<bool> fixed(set.modules.size());
        for (const size_t module : fix.modules) {
          fixed[module] = true;
        }
        const std::optional<Cost> cost = CostOf(set, index, fixed);
        if (fix.drop.empty() && conflict.modules.size() > 1) {
          ASSERT_FALSE(std::all_of(conflict.modules.begin(), conflict.modules.end(),
                                   [&](size_t module) { return fixed[module]; }))
              << fix.text;
        }
        if (fix.text.find("the rest can be merged") != std::string::npos) {
          ASSERT_EQ(0, (*cost)[0]) << fix.text;
          ASSERT_THAT(Objecting(set.objections)(fix.modules), testing::IsEmpty()) << fix.text;
        }
      }
    }
  }
}

}  // namespace

}  // namespace qm::tests
