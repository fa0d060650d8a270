#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "merge/PlanParts.h"

namespace qm::merge {

/// Finds the cheapest plan of a problem. A depth-first search with bounds: what remains after a
/// decision is divided into parts that do not affect one another, each part is solved once and
/// remembered, and a part is abandoned as soon as it cannot beat the best known answer. Keeps an
/// explicit stack, so that only memory limits the depth.
class PlanSearch {
 public:
  using Numbers = PlanState::Numbers;

  struct Result {
    Numbers modules;  ///< of the plan, in ascending order
    PlanCost cost;
    bool isProven = true;  ///< no plan costs less; false if the search reached its limit
  };

  /// A step is the examination of one candidate of a requirement. After `maxSteps` of them, a
  /// search returns the best plan found so far.
  PlanSearch(const PlanProblem& problem, std::uint64_t maxSteps)
      : m_state(problem), m_parts(m_state), m_maxSteps(maxSteps) {}
  PlanSearch(const PlanSearch&) = delete;
  PlanSearch& operator=(const PlanSearch&) = delete;
  ~PlanSearch() = default;

  /// Makes a combination of modules, in ascending order, cost one objection more. A combination of
  /// several modules must not be added twice.
  void AddObjection(const Numbers& modules) { m_state.AddObjection(modules); }

  /// Takes back an objection that was added, or an exclusion of the problem.
  void RemoveObjection(const Numbers& modules) { m_state.RemoveObjection(modules); }

  /// Makes the missing requirements of a module cost nothing from now on.
  void IgnoreMissing(std::uint32_t module) { m_state.ClearMissing(module); }

  /// Makes Solve choose a module only where nothing else satisfies a requirement, until Permit.
  void Avoid(std::uint32_t module) { m_state.AddMissing(module, kAvoided); }
  void Permit(std::uint32_t module) { m_state.AddMissing(module, -kAvoided); }

  /// Makes Solve regard a need as satisfied by something outside the set, until Withdraw.
  void Provide(std::uint32_t need) { m_state.Provide(need); }
  void Withdraw(std::uint32_t need) { m_state.Withdraw(need); }

  /// Returns the steps of the last search.
  std::uint64_t Steps() const noexcept { return m_state.Steps(); }

  /// Finds the cheapest plan with some modules.
  Result Solve(const Numbers& wanted);

  /// Returns the modules that cost an objection together with a module, alone or with others.
  Numbers FindOpponents(std::uint32_t module) const { return m_state.FindOpponents(module); }

  /// Returns the first combination of a plan that costs an objection; nothing if none does.
  Numbers FindObjection(const Numbers& plan) const { return m_state.FindObjection(plan); }

 private:
  using Answer = PlanState::Answer;
  using Part = PlanParts::Part;

  /// More than the number of requirements that a set can have.
  static constexpr std::int64_t kAvoided = 1'000'000'000'000;

  struct Remembered {
    bool isExact;  ///< otherwise only the cost is set, as a lower bound
    Answer answer;
  };

  /// A part whose candidates are being tried. While one is tried, `running` has the answer so far.
  struct Frame {
    Part part;
    PlanCost limit;  ///< only an answer that costs less is useful
    Answer best;
    Numbers choices;
    size_t nextChoice = 0;
    size_t mark = 0;  ///< length of the trail when the part was entered
    bool isRunning = false;
    size_t choiceMark = 0;
    Answer running;
    std::vector<Part> parts;
    size_t nextPart = 0;
    PlanCost rest;  ///< bound of the parts from `nextPart`
  };

  enum class Entry {
    Answered,  ///< `answer` is the cheapest one
    Useless,   ///< no answer costs less than the limit
    Pushed,    ///< the part is on the stack
  };

  bool BanUseless(const Part& part, const PlanCost& limit);
  Answer MinimizeCarriers(const Numbers& open);
  bool MayImprove(const PlanCost& best, const Numbers& open);
  Answer Minimize(const Numbers& open, const PlanCost& highest);
  Entry Enter(Part part, const PlanCost& limit, Answer& answer);
  bool StartNextChoice(Frame& frame);
  void StartParts(Frame& frame, const Numbers& open);
  void Receive(Frame& frame, Entry entry, const Answer& answer);
  void Remember(const Numbers& key, bool isExact, const Answer& answer);

  PlanState m_state;
  PlanParts m_parts;
  const std::uint64_t m_maxSteps;
  bool m_isExhausted = false;
  std::vector<Frame> m_stack;
  std::map<Numbers, Remembered> m_memory;
  size_t m_memorySize = 0;
};

}  // namespace qm::merge
