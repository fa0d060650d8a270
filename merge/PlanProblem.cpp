#include "merge/PlanProblem.h"

#include <algorithm>
#include <functional>

#include "merge/MergePlan.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

/// Returns the number of a key, and numbers it if it is new.
template <class Map, class Key>
std::uint32_t NumberOf(Map& map, const Key& key) {
  return map.try_emplace(key, static_cast<std::uint32_t>(map.size())).first->second;
}

/// Returns the language of all modules that have one; 0 if none has, or if they differ.
long FindCommonLanguage(const ModuleIndex& set, const std::vector<size_t>& modules) {
  long common = 0;
  for (const size_t position : modules) {
    const long language = set.Modules()[position].language;
    if (language != 0 && common != 0 && language != common) {
      return 0;
    }
    common = language != 0 ? language : common;
  }
  return common;
}

}  // namespace

bool PlanProblem::NeedKey::operator==(const NeedKey& other) const noexcept {
  return id == other.id && version == other.version && platform == other.platform &&
         language == other.language && userLanguage == other.userLanguage &&
         anyLanguage == other.anyLanguage && hasTables == other.hasTables;
}

size_t PlanProblem::HashNeedKey::operator()(const NeedKey& key) const noexcept {
  std::uint64_t hash = 0;
  const auto add = [&](std::uint64_t value) {
    hash = (hash ^ value) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 32U;
  };
  add((std::uint64_t{key.id} << 32U) | key.version);
  add((std::uint64_t{key.platform} << 32U) | static_cast<std::uint32_t>(key.language));
  add((std::uint64_t{key.anyLanguage} << 32U) | static_cast<std::uint32_t>(key.userLanguage));
  return static_cast<size_t>(hash);
}

PlanProblem::PlanProblem(const ModuleIndex& set, const std::vector<size_t>& wanted, Extent extent)
    : m_set(set),
      m_wantedLanguage(FindCommonLanguage(set, wanted)),
      m_numbers(set.Modules().size(), kNone) {
  for (const size_t position : wanted) {
    m_forced.push_back(AddModule(position));
  }
  ExpandForced();
  if (extent == Extent::AnySubset || m_hasChoice) {
    ExpandAll();
    FindOnlyCarriers(wanted);
    AddExclusions();
    AddCosts();
  }
}

std::uint32_t PlanProblem::FindId(const std::string& moduleId) {
  const auto [known, isNew] = m_idsAsWritten.try_emplace(moduleId, 0);
  if (isNew) {
    known->second = NumberOf(m_ids, text::FoldCase(moduleId));
    m_idCount = static_cast<std::uint32_t>(m_ids.size());
  }
  return known->second;
}

std::uint32_t PlanProblem::FindPlatform(const std::string& platform) {
  return NumberOf(m_platforms, platform);
}

std::uint32_t PlanProblem::AddModule(size_t position) {
  std::uint32_t& number = m_numbers[position];
  if (number == kNone) {
    number = static_cast<std::uint32_t>(m_modules.size());
    m_modules.emplace_back();
    m_modules.back().position = position;
    m_modules.back().id = FindId(m_set.Modules()[position].moduleId);
  }
  return number;
}

std::uint32_t PlanProblem::AddNeed(const Module& user, const Requirement& requirement) {
  const NeedKey key{FindId(requirement.moduleId),
                    NumberOf(m_versions, std::string_view(requirement.version)),
                    FindPlatform(user.platform),
                    requirement.language.value_or(0),
                    LanguageOf(user),
                    !requirement.language,
                    user.tables != nullptr};
  const auto [known, isNew] =
      m_needNumbers.try_emplace(key, static_cast<std::uint32_t>(m_needs.size()));
  if (isNew) {
    Need need;
    need.id = key.id;
    for (const Candidate& candidate : FindCandidates(requirement, user)) {
      const bool isCarrier = candidate.carried != nullptr;
      need.candidates.push_back(
          {AddModule(candidate.module), candidate.platform, candidate.language, isCarrier});
      need.hasCarriers = need.hasCarriers || isCarrier;
    }
    m_needs.push_back(std::move(need));
    m_lastUser.push_back(kNone);
  }
  return known->second;
}

void PlanProblem::Expand(std::uint32_t number) {
  if (m_modules[number].isExpanded) {
    return;
  }
  const Module& module = m_set.Modules()[m_modules[number].position];
  std::vector<std::uint32_t> rowNeeds;
  std::vector<std::uint32_t> needs;
  std::int64_t missing = 0;
  rowNeeds.reserve(module.requirements.size());
  for (const Requirement& requirement : module.requirements) {
    if (IsMetWithin(module, requirement)) {
      rowNeeds.push_back(kNone);
      continue;
    }
    const std::uint32_t need = AddNeed(module, requirement);
    rowNeeds.push_back(need);
    if (m_needs[need].candidates.empty()) {
      ++missing;
    } else if (m_lastUser[need] != number) {
      m_lastUser[need] = number;
      needs.push_back(need);
    }
  }
  Node& node = m_modules[number];
  node.isExpanded = true;
  node.rowNeeds = std::move(rowNeeds);
  node.needs = std::move(needs);
  node.cost[PlanCost::Missing] = missing;
  node.cost[PlanCost::Modules] = 1;
}

/// Finds the modules that are part of every plan: the wanted ones and the only candidates of needs.
void PlanProblem::ExpandForced() {
  std::vector<bool> isForced;
  const auto mark = [&](std::uint32_t module) {
    isForced.resize(std::max<size_t>(m_modules.size(), isForced.size()));
    const bool isNew = !isForced[module];
    isForced[module] = true;
    return isNew;
  };
  m_forced.erase(std::remove_if(m_forced.begin(), m_forced.end(),
                                [&](std::uint32_t module) { return !mark(module); }),
                 m_forced.end());
  std::vector<bool> isSeen;
  std::vector<std::uint32_t> open;
  for (size_t next = 0; next < m_forced.size(); ++next) {
    Expand(m_forced[next]);
    isSeen.resize(m_needs.size());
    for (const std::uint32_t need : m_modules[m_forced[next]].needs) {
      if (isSeen[need]) {
        continue;
      }
      isSeen[need] = true;
      const std::vector<Option>& candidates = m_needs[need].candidates;
      if (candidates.size() > 1) {
        open.push_back(need);
      } else if (mark(candidates.front().module)) {
        m_forced.push_back(candidates.front().module);
      }
    }
  }
  isForced.resize(m_modules.size());
  m_hasChoice = std::any_of(open.begin(), open.end(), [&](std::uint32_t need) {
    const std::vector<Option>& candidates = m_needs[need].candidates;
    return std::none_of(candidates.begin(), candidates.end(),
                        [&](const Option& one) { return isForced[one.module]; });
  });
}

void PlanProblem::ExpandAll() {
  for (std::uint32_t module = 0; module < m_modules.size(); ++module) {
    Expand(module);
  }
}

/// Determines Node::isOnlyCarrier, and with it Option::platform.
void PlanProblem::FindOnlyCarriers(const std::vector<size_t>& wanted) {
  std::vector<std::uint32_t> reached;
  const auto reach = [&](std::uint32_t module) {
    if (m_modules[module].isOnlyCarrier) {
      m_modules[module].isOnlyCarrier = false;
      reached.push_back(module);
    }
  };
  for (const size_t position : wanted) {
    reach(m_numbers[position]);
  }
  std::vector<bool> isSeen(m_needs.size());
  for (size_t next = 0; next < reached.size(); ++next) {
    for (const std::uint32_t need : m_modules[reached[next]].needs) {
      if (isSeen[need]) {
        continue;
      }
      isSeen[need] = true;
      for (const Option& candidate : m_needs[need].candidates) {
        if (!candidate.isCarrier) {
          reach(candidate.module);
        }
      }
    }
  }
  for (Need& need : m_needs) {
    for (Option& candidate : need.candidates) {
      if (candidate.isCarrier && !m_modules[candidate.module].isOnlyCarrier) {
        candidate.platform = PlatformMatch::Same;
      }
    }
  }
}

void PlanProblem::AddExclusions() {
  for (std::uint32_t number = 0; number < m_modules.size(); ++number) {
    const size_t position = m_modules[number].position;
    for (const Exclusion& exclusion : m_set.Modules()[position].exclusions) {
      for (const ExcludedModule& excluded : m_set.FindExcluded(position, exclusion)) {
        const std::uint32_t other = m_numbers[excluded.module];
        if (other != kNone) {
          m_modules[number].excludedWith.push_back(other);
          m_modules[other].excludedWith.push_back(number);
        }
      }
    }
  }
  for (Node& module : m_modules) {
    std::vector<std::uint32_t>& list = module.excludedWith;
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
  }
}

void PlanProblem::AddCosts() {
  for (Node& node : m_modules) {
    const VersionRank rank = m_set.RankOf(node.position);
    node.cost[PlanCost::Carriers] = node.isOnlyCarrier ? 1 : 0;
    node.cost[PlanCost::Versions] = static_cast<std::int64_t>(rank.higherVersions);
    node.cost[PlanCost::Order] = static_cast<std::int64_t>(rank.modulesBefore);
  }
}

}  // namespace qm::merge
