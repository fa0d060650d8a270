#include "merge/PlanState.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace qm::merge {

namespace {

/// Sorts numbers and removes repeated ones.
void RemoveRepeated(std::vector<std::uint32_t>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

}  // namespace

PlanState::PlanState(const PlanProblem& problem) : m_problem(problem) {
  const size_t modules = problem.Modules().size();
  const size_t needs = problem.Needs().size();
  m_services.resize(modules);
  m_carriedNeeds.resize(modules);
  m_combinationsOf.resize(modules);
  for (const PlanProblem::Node& node : problem.Modules()) {
    m_costs.push_back(node.cost);
    m_pairs.push_back(node.excludedWith);
  }
  for (std::uint32_t need = 0; need < needs; ++need) {
    const auto& candidates = problem.Needs()[need].candidates;
    for (std::uint32_t rank = 0; rank < candidates.size(); ++rank) {
      m_services[candidates[rank].module].push_back({need, rank + 1});
      if (problem.Needs()[need].hasCarriers) {
        m_carriedNeeds[candidates[rank].module].push_back(need);
      }
    }
  }
  m_isSelected.assign(modules, 0);
  m_isBanned.assign(modules, 0);
  m_uses.assign(needs, 0);
  m_server.assign(needs, kNone);
  m_openOfId.assign(problem.IdCount(), 0);
  m_selectedOfId.assign(problem.IdCount(), 0);
}

void PlanState::AddObjection(const Numbers& modules) {
  if (modules.size() == 1) {
    ++m_costs[modules.front()][PlanCost::Objections];
  } else if (modules.size() == 2) {
    m_pairs[modules[0]].push_back(modules[1]);
    m_pairs[modules[1]].push_back(modules[0]);
  } else {
    for (const std::uint32_t module : modules) {
      m_combinationsOf[module].push_back(static_cast<std::uint32_t>(m_combinations.size()));
    }
    m_combinations.push_back(modules);
  }
}

void PlanState::RemoveObjection(const Numbers& modules) {
  const auto remove = [](Numbers& list, std::uint32_t value) {
    list.erase(std::remove(list.begin(), list.end(), value), list.end());
  };
  if (modules.size() == 1) {
    --m_costs[modules.front()][PlanCost::Objections];
  } else if (modules.size() == 2) {
    remove(m_pairs[modules[0]], modules[1]);
    remove(m_pairs[modules[1]], modules[0]);
  } else {
    const auto found = std::find(m_combinations.begin(), m_combinations.end(), modules);
    for (const std::uint32_t module : modules) {
      remove(m_combinationsOf[module], static_cast<std::uint32_t>(found - m_combinations.begin()));
    }
  }
}

PlanState::Numbers PlanState::FindObjection(const Numbers& plan) const {
  const auto contains = [&](std::uint32_t module) {
    return std::binary_search(plan.begin(), plan.end(), module);
  };
  for (const std::uint32_t module : plan) {
    if (m_costs[module][PlanCost::Objections] > 0) {
      return {module};
    }
    for (const std::uint32_t other : m_pairs[module]) {
      if (module < other && contains(other)) {
        return {module, other};
      }
    }
    for (const std::uint32_t number : m_combinationsOf[module]) {
      const Numbers& combination = m_combinations[number];
      if (combination.front() == module &&
          std::all_of(combination.begin(), combination.end(), contains)) {
        return combination;
      }
    }
  }
  return {};
}

PlanState::Numbers PlanState::FindOpponents(std::uint32_t module) const {
  Numbers opponents = m_pairs[module];
  ForEachCombination(module, [&](const Numbers& combination) {
    std::copy_if(combination.begin(), combination.end(), std::back_inserter(opponents),
                 [&](std::uint32_t other) { return other != module; });
  });
  return opponents;
}

void PlanState::Set(Numbers& list, std::uint32_t index, std::uint32_t value) {
  m_trail.push_back({&list, index, list[index]});
  list[index] = value;
}

void PlanState::UndoTo(size_t mark) {
  while (m_trail.size() > mark) {
    const Undo& undo = m_trail.back();
    (*undo.list)[undo.index] = undo.old;
    m_trail.pop_back();
  }
}

PlanCost PlanState::CostOf(std::uint32_t module) const {
  PlanCost cost = m_costs[module];
  cost[PlanCost::Repeats] += m_selectedOfId[m_problem.Modules()[module].id] > 0 ? 1 : 0;
  for (const std::uint32_t other : m_pairs[module]) {
    cost[PlanCost::Objections] += m_isSelected[other];
  }
  for (const std::uint32_t number : m_combinationsOf[module]) {
    const Numbers& combination = m_combinations[number];
    cost[PlanCost::Objections] += std::all_of(
        combination.begin(), combination.end(),
        [&](std::uint32_t other) { return other == module || m_isSelected[other] != 0; });
  }
  return cost;
}

PlanCost PlanState::BoundCost(std::uint32_t module) const {
  PlanCost cost = CostOf(module);
  std::uint32_t served = 0;
  for (const auto& [need, rank] : m_services[module]) {
    if (IsOpen(need)) {
      served += m_problem.Needs()[need].hasCarriers ? 0 : 1;
    } else if (m_uses[need] > 0 && rank < m_server[need]) {
      const PlanCost change = ServiceCost(need, rank) - ServiceCost(need, m_server[need]);
      if (change < PlanCost{}) {
        cost.Add(change, m_uses[need]);
      }
    }
  }
  if (served < m_openOfId[m_problem.Modules()[module].id]) {
    ++cost[PlanCost::Repeats];
    ++cost[PlanCost::Modules];
  }
  return cost;
}

PlanCost PlanState::EstimateCost(std::uint32_t module) const {
  PlanCost cost = BoundCost(module);
  for (const auto& [need, rank] : m_services[module]) {
    if (IsOpen(need)) {
      cost.Add(ServiceCost(need, rank), m_uses[need]);
    }
  }
  return cost;
}

void PlanState::Select(std::uint32_t module, Numbers& open, Answer& answer) {
  const PlanProblem::Node& node = m_problem.Modules()[module];
  answer.cost += CostOf(module);
  answer.modules.push_back(module);
  m_steps += m_pairs[module].size();
  Set(m_isSelected, module, 1);
  Set(m_selectedOfId, node.id, m_selectedOfId[node.id] + 1);
  for (const auto& [need, rank] : m_services[module]) {
    if (m_server[need] != kNone && m_server[need] <= rank) {
      continue;
    }
    answer.cost.Add(ServiceCost(need, rank), m_uses[need]);
    if (m_server[need] != kNone) {
      answer.cost.Add(ServiceCost(need, m_server[need]), -std::int64_t{m_uses[need]});
    } else if (m_uses[need] > 0 && !m_problem.Needs()[need].hasCarriers) {
      Set(m_openOfId, node.id, m_openOfId[node.id] - 1);
    }
    Set(m_server, need, rank);
  }
  for (const std::uint32_t need : node.needs) {
    if (m_server[need] != kNone) {
      answer.cost += ServiceCost(need, m_server[need]);
    } else if (m_uses[need] == 0) {
      const std::uint32_t id = m_problem.Needs()[need].id;
      Set(m_openOfId, id, m_openOfId[id] + (m_problem.Needs()[need].hasCarriers ? 0 : 1));
      open.push_back(need);
    }
    Set(m_uses, need, m_uses[need] + 1);
  }
}

bool PlanState::Propagate(Numbers& open, Answer& answer) {
  while (true) {
    for (size_t next = 0; next < open.size(); ++next) {
      if (m_server[open[next]] != kNone) {
        continue;
      }
      std::uint32_t only = kNone;
      std::uint32_t count = 0;
      for (const auto& candidate : m_problem.Needs()[open[next]].candidates) {
        ++m_steps;
        if (m_isBanned[candidate.module] == 0) {
          only = candidate.module;
          if (++count > 1) {
            break;
          }
        }
      }
      if (count == 0) {
        return false;
      }
      if (count == 1) {
        Select(only, open, answer);
      }
    }
    open.erase(std::remove_if(open.begin(), open.end(),
                              [&](std::uint32_t need) { return m_server[need] != kNone; }),
               open.end());
    const size_t before = answer.modules.size();
    for (const Certain& certain : FindCertain(open)) {
      if (certain.candidates.empty()) {
        return false;
      }
      if (certain.candidates.size() == 1 && m_isSelected[certain.candidates.front()] == 0) {
        Select(certain.candidates.front(), open, answer);
      }
    }
    if (answer.modules.size() == before) {
      return true;
    }
  }
}

PlanState::Answer PlanState::Complete(Numbers open) {
  Answer answer;
  const size_t mark = m_trail.size();
  for (size_t next = 0; next < open.size(); ++next) {
    if (m_server[open[next]] != kNone) {
      continue;
    }
    std::uint32_t best = kNone;
    PlanCost bestCost;
    for (const auto& candidate : m_problem.Needs()[open[next]].candidates) {
      ++m_steps;
      if (m_isBanned[candidate.module] != 0) {
        continue;
      }
      const PlanCost cost = EstimateCost(candidate.module);
      if (best == kNone || cost < bestCost) {
        best = candidate.module;
        bestCost = cost;
      }
    }
    if (best == kNone) {
      answer.cost = MakeHighestCost();
      break;
    }
    Select(best, open, answer);
  }
  UndoTo(mark);
  return answer;
}

std::vector<PlanState::Certain> PlanState::FindCertain(const Numbers& open) {
  std::vector<Certain> certain;
  std::unordered_map<std::uint32_t, size_t> places;
  const auto append = [&](Numbers& modules, std::uint32_t need) {
    for (const auto& candidate : m_problem.Needs()[need].candidates) {
      ++m_steps;
      if (m_isBanned[candidate.module] == 0) {
        modules.push_back(candidate.module);
      }
    }
  };
  for (const std::uint32_t need : open) {
    const std::uint32_t id = m_problem.Needs()[need].id;
    const auto [place, isNew] = places.try_emplace(id, certain.size());
    if (isNew) {
      certain.push_back({id, {}});
    }
    append(certain[place->second].candidates, need);
  }
  for (size_t next = 0; next < certain.size(); ++next) {
    Numbers& list = certain[next].candidates;
    RemoveRepeated(list);
    const Numbers candidates = list;
    struct Shared {
      size_t count = 0;
      std::uint32_t last = kNone;
      Numbers needs;
    };
    std::unordered_map<std::uint32_t, Shared> shared;
    for (const std::uint32_t module : candidates) {
      for (const std::uint32_t need : m_problem.Modules()[module].needs) {
        const std::uint32_t id = m_problem.Needs()[need].id;
        ++m_steps;
        if (m_server[need] != kNone || places.count(id) != 0) {
          continue;
        }
        auto known = shared.find(id);
        if (known == shared.end()) {
          if (module != candidates.front()) {
            continue;
          }
          known = shared.emplace(id, Shared()).first;
        }
        Shared& needed = known->second;
        needed.count += needed.last != module ? 1 : 0;
        needed.last = module;
        needed.needs.push_back(need);
      }
    }
    for (auto& [id, needed] : shared) {
      if (needed.count == candidates.size()) {
        RemoveRepeated(needed.needs);
        places.emplace(id, certain.size());
        certain.push_back({id, {}});
        for (const std::uint32_t need : needed.needs) {
          append(certain.back().candidates, need);
        }
      }
    }
  }
  return certain;
}

}  // namespace qm::merge
