#include "merge/PlanSearch.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace qm::merge {

namespace {

/// Numbers that the memory of solved parts holds at most, so that it stays below some megabytes.
constexpr size_t kMaxMemorySize = 4'000'000;

constexpr size_t kMaxKeySize = 20'000;

PlanCost MakeHighestCost() {
  PlanCost cost;
  cost[PlanCost::Missing] = std::numeric_limits<std::int64_t>::max() / 4;
  return cost;
}

void Lower(PlanCost& cost, const PlanCost& other) {
  if (other < cost) {
    cost = other;
  }
}

/// Sorts numbers and removes repeated ones.
void RemoveRepeated(std::vector<std::uint32_t>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

/// More than the modules of a set can lack.
constexpr std::int64_t kAvoided = 1'000'000'000'000;

/// Groups that grow together.
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

PlanSearch::PlanSearch(const PlanProblem& problem, std::uint64_t maxSteps)
    : m_problem(problem), m_maxSteps(maxSteps) {
  const size_t modules = problem.Modules().size();
  const size_t needs = problem.Needs().size();
  m_services.resize(modules);
  m_combinationsOf.resize(modules);
  for (const PlanProblem::Node& node : problem.Modules()) {
    m_costs.push_back(node.cost);
    m_pairs.push_back(node.excludedWith);
  }
  for (std::uint32_t need = 0; need < needs; ++need) {
    const auto& candidates = problem.Needs()[need].candidates;
    for (std::uint32_t rank = 0; rank < candidates.size(); ++rank) {
      m_services[candidates[rank].module].push_back({need, rank});
    }
  }
  m_isSelected.assign(modules, 0);
  m_isBanned.assign(modules, 0);
  m_uses.assign(needs, 0);
  m_server.assign(needs, kNone);
  m_openOfId.assign(problem.IdCount(), 0);
  m_selectedOfId.assign(problem.IdCount(), 0);
  m_moduleGroup.assign(modules, kNone);
  m_needGroup.assign(needs, kNone);
  m_idGroup.assign(problem.IdCount(), kNone);
}

void PlanSearch::AddObjection(const Numbers& modules) {
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

void PlanSearch::RemoveObjection(const Numbers& modules) {
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

void PlanSearch::IgnoreMissing(std::uint32_t module) { m_costs[module][PlanCost::Missing] = 0; }

void PlanSearch::Avoid(std::uint32_t module) { m_costs[module][PlanCost::Missing] += kAvoided; }

void PlanSearch::Permit(std::uint32_t module) { m_costs[module][PlanCost::Missing] -= kAvoided; }

PlanSearch::Result PlanSearch::Solve(const Numbers& wanted) {
  m_steps = 0;
  m_isExhausted = false;
  m_memory.clear();
  m_memorySize = 0;
  Answer answer;
  Numbers open;
  for (const std::uint32_t module : wanted) {
    if (m_isSelected[module] == 0) {
      Select(module, open, answer);
    }
  }
  Propagate(open, answer);
  if (!open.empty()) {
    const Answer rest = Minimize(open);
    answer.cost += rest.cost;
    answer.modules.insert(answer.modules.end(), rest.modules.begin(), rest.modules.end());
  }
  UndoTo(0);
  std::sort(answer.modules.begin(), answer.modules.end());
  return {std::move(answer.modules), answer.cost, !m_isExhausted};
}

PlanSearch::Numbers PlanSearch::FindObjection(const Numbers& plan) const {
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

void PlanSearch::Set(Numbers& list, std::uint32_t index, std::uint32_t value) {
  m_trail.push_back({&list, index, list[index]});
  list[index] = value;
}

void PlanSearch::UndoTo(size_t mark) {
  while (m_trail.size() > mark) {
    const Undo& undo = m_trail.back();
    (*undo.list)[undo.index] = undo.old;
    m_trail.pop_back();
  }
}

/// Returns what a module costs beside those that are selected.
PlanCost PlanSearch::CostOf(std::uint32_t module) const {
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

/// Returns what every answer with a module costs at least because of it: what it costs now, less
/// what it improves for satisfied needs, and a second module of its ID if it does not satisfy all
/// open needs of the ID.
PlanCost PlanSearch::BoundCost(std::uint32_t module) const {
  PlanCost cost = CostOf(module);
  std::uint32_t served = 0;
  for (const auto& [need, rank] : m_services[module]) {
    if (IsOpen(need)) {
      ++served;
    } else if (m_uses[need] > 0 && rank < m_server[need]) {
      const auto& candidates = m_problem.Needs()[need].candidates;
      cost.Add(candidates[rank].Cost(), m_uses[need]);
      cost.Add(candidates[m_server[need]].Cost(), -std::int64_t{m_uses[need]});
    }
  }
  if (served < m_openOfId[m_problem.Modules()[module].id]) {
    ++cost[PlanCost::Repeats];
    ++cost[PlanCost::Modules];
  }
  return cost;
}

/// Adds to that what the module costs for the open needs that it satisfies.
PlanCost PlanSearch::EstimateCost(std::uint32_t module) const {
  PlanCost cost = BoundCost(module);
  for (const auto& [need, rank] : m_services[module]) {
    if (IsOpen(need)) {
      cost.Add(m_problem.Needs()[need].candidates[rank].Cost(), m_uses[need]);
    }
  }
  return cost;
}

/// Selects a module. Adds what it needs and is open to `open`, itself and its cost to `answer`.
void PlanSearch::Select(std::uint32_t module, Numbers& open, Answer& answer) {
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
    const auto& candidates = m_problem.Needs()[need].candidates;
    answer.cost.Add(candidates[rank].Cost(), m_uses[need]);
    if (m_server[need] != kNone) {
      answer.cost.Add(candidates[m_server[need]].Cost(), -std::int64_t{m_uses[need]});
    } else if (m_uses[need] > 0) {
      Set(m_openOfId, node.id, m_openOfId[node.id] - 1);
    }
    Set(m_server, need, rank);
  }
  for (const std::uint32_t need : node.needs) {
    if (m_server[need] != kNone) {
      answer.cost += m_problem.Needs()[need].candidates[m_server[need]].Cost();
    } else if (m_uses[need] == 0) {
      const std::uint32_t id = m_problem.Needs()[need].id;
      Set(m_openOfId, id, m_openOfId[id] + 1);
      open.push_back(need);
    }
    Set(m_uses, need, m_uses[need] + 1);
  }
}

/// Selects modules until every open need has a choice: those that every answer has. Removes from
/// `open` what is satisfied then. Returns whether every open need has a candidate left.
bool PlanSearch::Propagate(Numbers& open, Answer& answer) {
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

/// Satisfies open needs one after the other with what looks cheapest.
PlanSearch::Answer PlanSearch::Complete(Numbers open) {
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

/// Divides open needs and all that they may bring in into parts that do not affect one another.
std::vector<PlanSearch::Part> PlanSearch::Split(const Numbers& open) {
  Groups groups;
  Numbers modules;
  Numbers needs;
  Numbers ids;
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
    m_needGroup[first] = group;
    needs.push_back(first);
    for (size_t next = needs.size() - 1; next < needs.size(); ++next) {
      for (const auto& candidate : m_problem.Needs()[needs[next]].candidates) {
        const std::uint32_t module = candidate.module;
        ++m_steps;
        if (m_isBanned[module] != 0) {
          continue;
        }
        if (m_moduleGroup[module] != kNone) {
          join(m_moduleGroup[module]);
          continue;
        }
        const PlanProblem::Node& node = m_problem.Modules()[module];
        m_moduleGroup[module] = group;
        modules.push_back(module);
        if (m_idGroup[node.id] == kNone) {
          m_idGroup[node.id] = group;
          ids.push_back(node.id);
        }
        join(m_idGroup[node.id]);
        m_steps += m_pairs[module].size();
        for (const std::uint32_t other : m_pairs[module]) {
          join(m_moduleGroup[other]);
        }
        for (const std::uint32_t number : m_combinationsOf[module]) {
          for (const std::uint32_t other : m_combinations[number]) {
            join(m_moduleGroup[other]);
          }
        }
        for (const std::uint32_t need : node.needs) {
          ++m_steps;
          if (m_server[need] != kNone) {
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

/// Returns all that the answer for a part depends on: open needs, and the modules that can be
/// selected, with what the selected ones mean for them.
PlanSearch::Numbers PlanSearch::MakeKey(const Part& part) const {
  Numbers key;
  for (const std::uint32_t need : part.open) {
    key.push_back(need);
    key.push_back(m_uses[need]);
  }
  key.push_back(kNone);
  for (const std::uint32_t module : part.modules) {
    const PlanProblem::Node& node = m_problem.Modules()[module];
    if (m_selectedOfId[node.id] > 0 || key.size() > kMaxKeySize) {
      return {};
    }
    key.push_back(module);
    key.push_back(static_cast<std::uint32_t>(CostOf(module)[PlanCost::Objections]));
    for (const std::uint32_t number : m_combinationsOf[module]) {
      const Numbers& combination = m_combinations[number];
      for (const std::uint32_t other : combination) {
        key.push_back(m_isSelected[other] + 2 * m_isBanned[other]);
      }
    }
    for (const std::uint32_t need : node.needs) {
      key.push_back(m_server[need]);
    }
  }
  return key;
}

/// Returns the IDs of which every answer has a module, with the candidates: the IDs of open needs,
/// and those that all candidates for one of them need.
std::vector<PlanSearch::Certain> PlanSearch::FindCertain(const Numbers& open) {
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

/// Fills in what satisfying the open needs of a part costs at least: for each ID of which every
/// answer has a module, its cheapest one.
void PlanSearch::FillBound(Part& part) {
  for (const std::uint32_t need : part.open) {
    PlanCost lowest = MakeHighestCost();
    for (const auto& candidate : m_problem.Needs()[need].candidates) {
      if (m_isBanned[candidate.module] == 0) {
        Lower(lowest, candidate.Cost());
      }
    }
    part.bound.Add(lowest, m_uses[need]);
  }
  for (const Certain& certain : FindCertain(part.open)) {
    PlanCost lowest = MakeHighestCost();
    for (const std::uint32_t module : certain.candidates) {
      Lower(lowest, BoundCost(module));
    }
    part.bound += lowest;
    part.bounds.emplace(certain.id, lowest);
  }
}

/// Bans the modules of a part with which nothing below the limit is possible. Returns whether there
/// are any.
bool PlanSearch::BanUseless(const Part& part, const PlanCost& limit) {
  const size_t mark = m_trail.size();
  for (const std::uint32_t module : part.modules) {
    PlanCost cost = part.bound + BoundCost(module);
    const auto known = part.bounds.find(m_problem.Modules()[module].id);
    if (known != part.bounds.end()) {
      cost -= known->second;
    }
    if (!(cost < limit)) {
      Set(m_isBanned, module, 1);
    }
  }
  return m_trail.size() > mark;
}

/// Solves the parts of a problem, each by trying the candidates of one of its needs.
PlanSearch::Answer PlanSearch::Minimize(const Numbers& open) {
  Frame root;
  root.limit = MakeHighestCost();
  root.best.cost = root.limit;
  root.isRunning = true;
  root.mark = m_trail.size();
  root.choiceMark = root.mark;
  StartParts(root, open);
  m_stack.push_back(std::move(root));
  while (true) {
    Frame& frame = m_stack.back();
    if (frame.isRunning && frame.nextPart < frame.parts.size()) {
      Part part = std::move(frame.parts[frame.nextPart]);
      frame.rest -= part.bound;
      PlanCost limit = frame.limit;
      Lower(limit, frame.best.cost);
      limit -= frame.running.cost + frame.rest;
      Answer answer;
      const Entry entry = Enter(std::move(part), limit, answer);
      if (entry != Entry::Pushed) {
        Receive(frame, entry, answer);
      }
      continue;
    }
    if (frame.isRunning) {
      if (frame.running.cost < frame.best.cost) {
        frame.best = std::move(frame.running);
      }
      frame.isRunning = false;
      UndoTo(frame.choiceMark);
    }
    if (StartNextChoice(frame)) {
      continue;
    }
    Answer best = std::move(frame.best);
    if (m_stack.size() == 1) {
      m_stack.pop_back();
      return best;
    }
    const bool isUseful = best.cost < frame.limit;
    if (!m_isExhausted) {
      Remember(frame.part.key, isUseful, isUseful ? best : Answer{frame.limit, {}});
    }
    UndoTo(frame.mark);
    m_stack.pop_back();
    Receive(m_stack.back(), isUseful ? Entry::Answered : Entry::Useless, best);
  }
}

/// Begins to solve a part.
PlanSearch::Entry PlanSearch::Enter(Part part, const PlanCost& limit, Answer& answer) {
  const auto judge = [&] { return answer.cost < limit ? Entry::Answered : Entry::Useless; };
  if (!part.key.empty()) {
    if (const auto known = m_memory.find(part.key); known != m_memory.end()) {
      if (known->second.isExact || !(known->second.answer.cost < limit)) {
        answer = known->second.answer;
        return judge();
      }
    }
  }
  if (!(part.bound < limit)) {
    return Entry::Useless;
  }
  answer = Complete(part.open);
  if (!(part.bound < answer.cost)) {
    Remember(part.key, true, answer);
    return judge();
  }
  if (m_steps > m_maxSteps) {
    m_isExhausted = true;
    return judge();
  }
  Frame frame;
  frame.limit = limit;
  frame.best = answer;
  frame.mark = m_trail.size();
  PlanCost useful = limit;
  Lower(useful, answer.cost);
  if (BanUseless(part, useful)) {
    Numbers open = part.open;
    frame.choiceMark = m_trail.size();
    if (Propagate(open, frame.running)) {
      StartParts(frame, open);
      frame.isRunning = frame.running.cost + frame.rest < useful;
    }
    frame.part = std::move(part);
    m_stack.push_back(std::move(frame));
    return Entry::Pushed;
  }
  size_t fewest = std::numeric_limits<size_t>::max();
  for (const std::uint32_t need : part.open) {
    Numbers choices;
    for (const auto& candidate : m_problem.Needs()[need].candidates) {
      ++m_steps;
      if (m_isBanned[candidate.module] == 0) {
        choices.push_back(candidate.module);
      }
    }
    if (choices.size() < fewest) {
      fewest = choices.size();
      frame.choices = std::move(choices);
    }
  }
  std::vector<std::pair<PlanCost, std::uint32_t>> ordered;
  for (const std::uint32_t module : frame.choices) {
    ordered.emplace_back(EstimateCost(module), module);
  }
  std::sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) {
    return a.first < b.first || (!(b.first < a.first) && a.second < b.second);
  });
  std::transform(ordered.begin(), ordered.end(), frame.choices.begin(),
                 [](const auto& one) { return one.second; });
  frame.part = std::move(part);
  m_stack.push_back(std::move(frame));
  return Entry::Pushed;
}

/// Selects the next candidate that can lead to something better. The plans with those before it are
/// known, so they are out of the question.
bool PlanSearch::StartNextChoice(Frame& frame) {
  while (frame.nextChoice < frame.choices.size() && !m_isExhausted) {
    if (frame.nextChoice > 0) {
      Set(m_isBanned, frame.choices[frame.nextChoice - 1], 1);
    }
    frame.choiceMark = m_trail.size();
    frame.running = {};
    Numbers open = frame.part.open;
    Select(frame.choices[frame.nextChoice++], open, frame.running);
    if (Propagate(open, frame.running)) {
      StartParts(frame, open);
      const PlanCost expected = frame.running.cost + frame.rest;
      if (expected < frame.limit && expected < frame.best.cost) {
        frame.isRunning = true;
        return true;
      }
    }
    UndoTo(frame.choiceMark);
    m_isExhausted = m_isExhausted || m_steps > m_maxSteps;
  }
  return false;
}

void PlanSearch::StartParts(Frame& frame, const Numbers& open) {
  frame.parts = Split(open);
  frame.nextPart = 0;
  frame.rest = {};
  for (const Part& part : frame.parts) {
    frame.rest += part.bound;
  }
}

void PlanSearch::Receive(Frame& frame, Entry entry, const Answer& answer) {
  if (entry == Entry::Useless) {
    frame.isRunning = false;
    UndoTo(frame.choiceMark);
    return;
  }
  frame.running.cost += answer.cost;
  frame.running.modules.insert(frame.running.modules.end(), answer.modules.begin(),
                               answer.modules.end());
  ++frame.nextPart;
}

void PlanSearch::Remember(const Numbers& key, bool isExact, const Answer& answer) {
  const size_t size = key.size() + answer.modules.size();
  if (!key.empty() && m_memorySize + size <= kMaxMemorySize) {
    m_memorySize += size;
    m_memory.insert_or_assign(key, Remembered{isExact, answer});
  }
}

}  // namespace qm::merge
