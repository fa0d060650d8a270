#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "merge/PlanProblem.h"

namespace qm::merge {

/// Finds the cheapest plan of a problem. A depth-first search with bounds: what remains after a
/// decision is divided into parts that do not affect one another, each part is solved once and
/// remembered, and a part is left as soon as it cannot be better than the best that is known. Keeps
/// an explicit stack, so that only memory limits the depth.
class PlanSearch {
 public:
  using Numbers = std::vector<std::uint32_t>;

  struct Result {
    Numbers modules;  ///< of the plan, in ascending order
    PlanCost cost;
    bool isProven = true;  ///< no plan costs less; false if the search ended at its bound
  };

  /// A step is one look at a candidate of a requirement. After `maxSteps` of them, a search returns
  /// the best plan that it has.
  PlanSearch(const PlanProblem& problem, std::uint64_t maxSteps);

  /// Makes a combination of modules, in ascending order, cost one objection more. A combination of
  /// several modules may be added once.
  void AddObjection(const Numbers& modules);

  /// Takes back an objection that was added, or an exclusion of the problem.
  void RemoveObjection(const Numbers& modules);

  /// Makes what a module lacks cost nothing from now on.
  void IgnoreMissing(std::uint32_t module);

  /// Makes Solve choose a module only where nothing else satisfies a requirement, until Permit.
  void Avoid(std::uint32_t module);
  void Permit(std::uint32_t module);

  /// Returns the steps of the last search.
  std::uint64_t Steps() const noexcept { return m_steps; }

  /// Finds the cheapest plan with some modules.
  Result Solve(const Numbers& wanted);

  /// Returns the first combination of a plan that costs an objection; nothing if none does.
  Numbers FindObjection(const Numbers& plan) const;

 private:
  struct Service {
    std::uint32_t need;
    std::uint32_t rank;  ///< of the module among the candidates
  };

  struct Answer {
    PlanCost cost;
    Numbers modules;
  };

  /// Needs that share no module, ID or objection with others.
  struct Part {
    Numbers open;     ///< needs of selected modules that no selected module satisfies
    Numbers modules;  ///< that answers can have
    Numbers key;      ///< what the answer depends on; empty if it must not be remembered
    PlanCost bound;   ///< every answer costs at least this
    std::map<std::uint32_t, PlanCost> bounds;  ///< the same for one ID
  };

  /// An ID of which every answer has a module.
  struct Certain {
    std::uint32_t id;
    Numbers candidates;  ///< one of these
  };

  struct Remembered {
    bool isExact;  ///< otherwise only the cost is known, as a bound
    Answer answer;
  };

  /// A part whose candidates are being tried. While one is, `running` has what was found with it.
  struct Frame {
    Part part;
    PlanCost limit;  ///< only what costs less is of use
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

  struct Undo {
    Numbers* list;
    std::uint32_t index;
    std::uint32_t old;
  };

  enum class Entry {
    Answered,  ///< `answer` is the cheapest one
    Useless,   ///< no answer costs less than the limit
    Pushed,    ///< the part is on the stack
  };

  void Set(Numbers& list, std::uint32_t index, std::uint32_t value);
  void UndoTo(size_t mark);
  PlanCost CostOf(std::uint32_t module) const;
  PlanCost BoundCost(std::uint32_t module) const;
  PlanCost EstimateCost(std::uint32_t module) const;
  void Select(std::uint32_t module, Numbers& open, Answer& answer);
  bool Propagate(Numbers& open, Answer& answer);
  Answer Complete(Numbers open);
  std::vector<Part> Split(const Numbers& open);
  Numbers MakeKey(const Part& part) const;
  std::vector<Certain> FindCertain(const Numbers& open);
  void FillBound(Part& part);
  bool BanUseless(const Part& part, const PlanCost& limit);

  bool IsOpen(std::uint32_t need) const { return m_uses[need] > 0 && m_server[need] == kNone; }

  Answer Minimize(const Numbers& open);
  Entry Enter(Part part, const PlanCost& limit, Answer& answer);
  bool StartNextChoice(Frame& frame);
  void StartParts(Frame& frame, const Numbers& open);
  void Receive(Frame& frame, Entry entry, const Answer& answer);
  void Remember(const Numbers& key, bool isExact, const Answer& answer);

  static constexpr std::uint32_t kNone = PlanProblem::kNone;

  const PlanProblem& m_problem;
  const std::uint64_t m_maxSteps;
  std::uint64_t m_steps = 0;
  bool m_isExhausted = false;

  std::vector<std::vector<Service>> m_services;  ///< by module: the needs that it satisfies
  std::vector<PlanCost> m_costs;                 ///< by module: whatever else is planned
  std::vector<Numbers> m_pairs;                  ///< by module: those that must not go with it
  std::vector<Numbers> m_combinations;           ///< of three or more modules, sorted
  std::vector<Numbers> m_combinationsOf;         ///< by module

  Numbers m_isSelected;  ///< by module
  Numbers m_isBanned;
  Numbers m_uses;    ///< by need: number of selected modules that have it
  Numbers m_server;  ///< by need: best rank of a selected candidate
  Numbers m_openOfId;
  Numbers m_selectedOfId;
  std::vector<Undo> m_trail;

  std::vector<Frame> m_stack;
  std::map<Numbers, Remembered> m_memory;
  size_t m_memorySize = 0;

  Numbers m_moduleGroup;  ///< scratch of Split, kNone between calls
  Numbers m_needGroup;
  Numbers m_idGroup;
};

}  // namespace qm::merge
