#include "merge/PlanSearch.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace qm::merge {

namespace {

/// The most numbers in the memory of solved parts, which limits it to some megabytes.
constexpr size_t kMaxMemorySize = 4'000'000;

}  // namespace

PlanSearch::Result PlanSearch::Solve(const Numbers& wanted) {
  m_state.ClearSteps();
  m_isExhausted = false;
  m_memory.clear();
  m_memorySize = 0;
  Answer answer;
  Numbers open;
  for (const std::uint32_t module : wanted) {
    if (!m_state.IsSelected(module)) {
      m_state.Select(module, open, answer);
    }
  }
  m_state.Propagate(open, answer);
  if (!open.empty()) {
    const Answer rest = MinimizeCarriers(open);
    answer.cost += rest.cost;
    answer.modules.insert(answer.modules.end(), rest.modules.begin(), rest.modules.end());
  }
  m_state.UndoTo(0);
  std::sort(answer.modules.begin(), answer.modules.end());
  return {std::move(answer.modules), answer.cost, !m_isExhausted};
}

/// Solves the parts of a problem, at first without modules that are needed only for what they
/// carry. They rarely improve a plan, and one of them can connect any number of parts, so a single
/// search would take long to show that none does.
PlanSearch::Answer PlanSearch::MinimizeCarriers(const Numbers& open) {
  const size_t mark = m_state.Mark();
  const auto& modules = m_state.Problem().Modules();
  for (std::uint32_t module = 0; module < modules.size(); ++module) {
    if (modules[module].isOnlyCarrier && !m_state.IsSelected(module)) {
      m_state.Ban(module);
    }
  }
  if (m_state.Mark() == mark) {
    return Minimize(open, MakeHighestCost());
  }
  Answer best;
  Numbers rest = open;
  const bool isPossible = m_state.Propagate(rest, best);
  if (isPossible && !rest.empty()) {
    const Answer others = Minimize(rest, MakeHighestCost());
    best.cost += others.cost;
    best.modules.insert(best.modules.end(), others.modules.begin(), others.modules.end());
  }
  m_state.UndoTo(mark);
  if (!isPossible || !(best.cost < MakeHighestCost())) {
    best = m_state.Complete(open);
  } else if (!MayImprove(best.cost, open)) {
    return best;
  }
  if (!m_isExhausted) {
    Answer other = Minimize(open, best.cost);
    if (other.cost < best.cost) {
      return other;
    }
  }
  return best;
}

/// Returns whether an answer with a module that is needed only for what it carries can cost less
/// than the best one without.
bool PlanSearch::MayImprove(const PlanCost& best, const Numbers& open) {
  PlanCost bound;
  bound[PlanCost::Carriers] = 1;
  if (!(bound < best)) {
    return false;
  }
  for (const Part& part : m_parts.Split(open)) {
    bound += part.bound;
  }
  return bound < best;
}

/// Bans the modules of a part that no answer below the limit can contain. Returns whether there are
/// any.
bool PlanSearch::BanUseless(const Part& part, const PlanCost& limit) {
  const size_t mark = m_state.Mark();
  for (const std::uint32_t module : part.modules) {
    PlanCost cost = part.bound + m_state.BoundCost(module);
    const auto known = part.bounds.find(m_state.Problem().Modules()[module].id);
    if (known != part.bounds.end()) {
      cost -= known->second;
    }
    if (!(cost < limit)) {
      m_state.Ban(module);
    }
  }
  return m_state.Mark() > mark;
}

/// Solves the parts of a problem, each by trying the candidates of one of its needs. The answer is
/// the cheapest one if it costs less than `highest`; otherwise it costs at least that.
PlanSearch::Answer PlanSearch::Minimize(const Numbers& open, const PlanCost& highest) {
  Frame root;
  root.limit = highest;
  root.best.cost = root.limit;
  root.isRunning = true;
  root.mark = m_state.Mark();
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
      m_state.UndoTo(frame.choiceMark);
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
    m_state.UndoTo(frame.mark);
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
  answer = m_state.Complete(part.open);
  if (!(part.bound < answer.cost)) {
    Remember(part.key, true, answer);
    return judge();
  }
  if (m_state.Steps() > m_maxSteps) {
    m_isExhausted = true;
    return judge();
  }
  Frame frame;
  frame.limit = limit;
  frame.best = answer;
  frame.mark = m_state.Mark();
  PlanCost useful = limit;
  Lower(useful, answer.cost);
  if (BanUseless(part, useful)) {
    Numbers open = part.open;
    frame.choiceMark = m_state.Mark();
    if (m_state.Propagate(open, frame.running)) {
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
    for (const auto& candidate : m_state.Problem().Needs()[need].candidates) {
      m_state.CountSteps(1);
      if (!m_state.IsBanned(candidate.module)) {
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
    ordered.emplace_back(m_state.EstimateCost(module), module);
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

/// Selects the next candidate that can lead to something better; false if none is left. Bans the
/// candidates before it, because the plans that contain them are known.
bool PlanSearch::StartNextChoice(Frame& frame) {
  while (frame.nextChoice < frame.choices.size() && !m_isExhausted) {
    if (frame.nextChoice > 0) {
      m_state.Ban(frame.choices[frame.nextChoice - 1]);
    }
    frame.choiceMark = m_state.Mark();
    frame.running = {};
    Numbers open = frame.part.open;
    m_state.Select(frame.choices[frame.nextChoice++], open, frame.running);
    if (m_state.Propagate(open, frame.running)) {
      StartParts(frame, open);
      const PlanCost expected = frame.running.cost + frame.rest;
      if (expected < frame.limit && expected < frame.best.cost) {
        frame.isRunning = true;
        return true;
      }
    }
    m_state.UndoTo(frame.choiceMark);
    m_isExhausted = m_isExhausted || m_state.Steps() > m_maxSteps;
  }
  return false;
}

void PlanSearch::StartParts(Frame& frame, const Numbers& open) {
  frame.parts = m_parts.Split(open);
  frame.nextPart = 0;
  frame.rest = {};
  for (const Part& part : frame.parts) {
    frame.rest += part.bound;
  }
}

void PlanSearch::Receive(Frame& frame, Entry entry, const Answer& answer) {
  if (entry == Entry::Useless) {
    frame.isRunning = false;
    m_state.UndoTo(frame.choiceMark);
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
