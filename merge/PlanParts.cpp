#include "merge/PlanParts.h"

#include <algorithm>
#include <utility>

namespace qm::merge {

namespace {

constexpr size_t kMaxKeySize = 20'000;

/// Groups of members that can be joined (union-find).
class Groups {
 public:
  std::uint32_t Add() {
    m_parents.push_back(static_cast<std::uint32_t>(m_parents.size()));
    return m_parents.back();
  }
  std::uint32_t Find(std::uint32_t group) {
    while (m_parents[group] != group) {
      m_parents[group] = m_parents[m_parents[group]];
      group = m_parents[group];
    }
    return group;
  }
  void Join(std::uint32_t a, std::uint32_t b) { m_parents[Find(a)] = Find(b); }

 private:
  std::vector<std::uint32_t> m_parents;
};

}  // namespace

PlanParts::PlanParts(PlanState& state)
    : m_state(state),
      m_moduleGroup(state.Problem().Modules().size(), kNone),
      m_needGroup(state.Problem().Needs().size(), kNone),
      m_idGroup(state.Problem().IdCount(), kNone) {}

std::vector<PlanParts::Part> PlanParts::Split(const Numbers& open) {
  Groups groups;
  Numbers modules;
  Numbers needs;
  Numbers ids;
  Numbers shared;  // satisfied needs that modules of several IDs satisfy
  for (const std::uint32_t first : open) {
    if (m_needGroup[first] != kNone) {
      continue;
    }
    const std::uint32_t group = groups.Add();
    const auto join = [&](std::uint32_t other) {
      if (other != kNone) {
        groups.Join(group, other);
      }
    };
    const auto joinUsers = [&](std::uint32_t need) {
      if (m_needGroup[need] == kNone) {
        m_needGroup[need] = group;
        shared.push_back(need);
      }
      join(m_needGroup[need]);
    };
    m_needGroup[first] = group;
    needs.push_back(first);
    for (size_t next = needs.size() - 1; next < needs.size(); ++next) {
      for (const auto& candidate : m_state.Problem().Needs()[needs[next]].candidates) {
        const std::uint32_t module = candidate.module;
        m_state.CountSteps(1);
        if (m_state.IsBanned(module)) {
          continue;
        }
        if (m_moduleGroup[module] != kNone) {
          join(m_moduleGroup[module]);
          continue;
        }
        const PlanProblem::Node& node = m_state.Problem().Modules()[module];
        m_moduleGroup[module] = group;
        modules.push_back(module);
        if (m_idGroup[node.id] == kNone) {
          m_idGroup[node.id] = group;
          ids.push_back(node.id);
        }
        join(m_idGroup[node.id]);
        m_state.CountSteps(m_state.Excluded(module).size());
        for (const std::uint32_t other : m_state.Excluded(module)) {
          join(m_moduleGroup[other]);
        }
        m_state.ForEachCombination(module, [&](const Numbers& combination) {
          for (const std::uint32_t other : combination) {
            join(m_moduleGroup[other]);
          }
        });
        m_state.CountSteps(m_state.CarriedNeeds(module).size());
        for (const std::uint32_t need : m_state.CarriedNeeds(module)) {
          if (m_state.IsServed(need)) {
            joinUsers(need);
          }
        }
        for (const std::uint32_t need : node.needs) {
          m_state.CountSteps(1);
          if (m_state.IsServed(need)) {
            if (m_state.Problem().Needs()[need].hasCarriers) {
              joinUsers(need);
            }
            continue;
          }
          if (m_needGroup[need] == kNone) {
            m_needGroup[need] = group;
            needs.push_back(need);
          }
          join(m_needGroup[need]);
        }
      }
    }
  }
  std::vector<Part> parts;
  std::vector<Numbers> modulesOfParts;
  Numbers partOfGroup;
  const auto partOf = [&](std::uint32_t member) {
    const std::uint32_t group = groups.Find(member);
    partOfGroup.resize(std::max<size_t>(partOfGroup.size(), group + 1), kNone);
    if (partOfGroup[group] == kNone) {
      partOfGroup[group] = static_cast<std::uint32_t>(parts.size());
      parts.emplace_back();
      modulesOfParts.emplace_back();
    }
    return partOfGroup[group];
  };
  for (const std::uint32_t need : open) {
    parts[partOf(m_needGroup[need])].open.push_back(need);
  }
  for (const std::uint32_t module : modules) {
    modulesOfParts[partOf(m_moduleGroup[module])].push_back(module);
  }
  for (const std::uint32_t module : modules) {
    m_moduleGroup[module] = kNone;
  }
  for (const std::uint32_t need : needs) {
    m_needGroup[need] = kNone;
  }
  for (const std::uint32_t need : shared) {
    m_needGroup[need] = kNone;
  }
  for (const std::uint32_t id : ids) {
    m_idGroup[id] = kNone;
  }
  for (size_t at = 0; at < parts.size(); ++at) {
    std::sort(modulesOfParts[at].begin(), modulesOfParts[at].end());
    std::sort(parts[at].open.begin(), parts[at].open.end());
    parts[at].modules = std::move(modulesOfParts[at]);
    parts[at].key = MakeKey(parts[at]);
    FillBound(parts[at]);
  }
  return parts;
}

/// Returns everything that the answer for a part depends on: its open needs, and the modules that
/// can be selected, with the effect of the selected ones on them. Empty if the answer must not be
/// remembered.
PlanParts::Numbers PlanParts::MakeKey(const Part& part) const {
  Numbers key;
  for (const std::uint32_t need : part.open) {
    key.push_back(need);
    key.push_back(m_state.Uses(need));
  }
  key.push_back(kNone);
  for (const std::uint32_t module : part.modules) {
    const PlanProblem::Node& node = m_state.Problem().Modules()[module];
    if (m_state.IsIdSelected(node.id) || key.size() > kMaxKeySize) {
      return {};
    }
    key.push_back(module);
    key.push_back(static_cast<std::uint32_t>(m_state.CostOf(module)[PlanCost::Objections]));
    m_state.ForEachCombination(module, [&](const Numbers& combination) {
      for (const std::uint32_t other : combination) {
        key.push_back((m_state.IsSelected(other) ? 1 : 0) + (m_state.IsBanned(other) ? 2 : 0));
      }
    });
    for (const std::uint32_t need : node.needs) {
      key.push_back(m_state.Server(need));
    }
    for (const std::uint32_t need : m_state.CarriedNeeds(module)) {
      key.push_back(m_state.Server(need));
      key.push_back(m_state.Uses(need));
    }
  }
  return key;
}

/// Fills in the lower bound for satisfying the open needs of a part: the cheapest candidate for
/// each need, and the cheapest module of each ID that every answer contains. A carrier, which can
/// stand for modules of several IDs, counts only for its own.
void PlanParts::FillBound(Part& part) {
  for (const std::uint32_t need : part.open) {
    PlanCost lowest = MakeHighestCost();
    for (const auto& candidate : m_state.Problem().Needs()[need].candidates) {
      if (!m_state.IsBanned(candidate.module)) {
        Lower(lowest, candidate.Cost());
      }
    }
    part.bound.Add(lowest, m_state.Uses(need));
  }
  for (const PlanState::Certain& certain : m_state.FindCertain(part.open)) {
    PlanCost lowest = MakeHighestCost();
    for (const std::uint32_t module : certain.candidates) {
      const bool isCarrier = m_state.Problem().Modules()[module].id != certain.id;
      Lower(lowest, isCarrier ? PlanCost{} : m_state.BoundCost(module));
    }
    part.bound += lowest;
    part.bounds.emplace(certain.id, lowest);
  }
}

}  // namespace qm::merge
