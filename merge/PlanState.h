#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "merge/PlanProblem.h"

namespace qm::merge {

/// More than anything costs.
inline PlanCost MakeHighestCost() {
  PlanCost cost;
  cost[PlanCost::Missing] = std::numeric_limits<std::int64_t>::max() / 4;
  return cost;
}

inline void Lower(PlanCost& cost, const PlanCost& other) {
  if (other < cost) {
    cost = other;
  }
}

/// The modules that a search has selected and banned so far, and what follows from that: what a
/// module costs now, and which modules every answer has. A need is open while a selected module has
/// it and no selected module satisfies it. UndoTo takes all of it back.
class PlanState {
 public:
  using Numbers = std::vector<std::uint32_t>;

  static constexpr std::uint32_t kNone = PlanProblem::kNone;

  struct Answer {
    PlanCost cost;
    Numbers modules;
  };

  /// An ID of which every answer has a module.
  struct Certain {
    std::uint32_t id;
    Numbers candidates;  ///< one of these
  };

  /// Nothing is selected or banned. `problem` must outlive the object.
  explicit PlanState(const PlanProblem& problem);

  const PlanProblem& Problem() const noexcept { return m_problem; }

  // ---- Costs

  /// See PlanSearch.
  void AddObjection(const Numbers& modules);
  void RemoveObjection(const Numbers& modules);
  Numbers FindObjection(const Numbers& plan) const;
  Numbers FindOpponents(std::uint32_t module) const;

  /// Adds `count`, which may be negative, to the missing requirements that a module costs.
  void AddMissing(std::uint32_t module, std::int64_t count) {
    m_costs[module][PlanCost::Missing] += count;
  }
  void ClearMissing(std::uint32_t module) { m_costs[module][PlanCost::Missing] = 0; }

  /// Makes something outside the set satisfy a need for nothing, until Withdraw. Nothing may be
  /// selected.
  void Provide(std::uint32_t need) { m_server[need] = kProvided; }
  void Withdraw(std::uint32_t need) { m_server[need] = kNone; }

  /// The modules that must not be merged with `module`.
  const Numbers& Excluded(std::uint32_t module) const { return m_pairs[module]; }

  /// Calls `use` with each combination of three or more modules that must not be merged together
  /// and that contains `module`.
  template <class Use>
  void ForEachCombination(std::uint32_t module, Use use) const {
    for (const std::uint32_t number : m_combinationsOf[module]) {
      use(m_combinations[number]);
    }
  }

  /// The needs with carriers among their candidates that a module satisfies.
  const Numbers& CarriedNeeds(std::uint32_t module) const { return m_carriedNeeds[module]; }

  /// Returns what a module adds to the cost of the selected ones.
  PlanCost CostOf(std::uint32_t module) const;

  /// Returns a lower bound for what a module adds to any answer that contains it: its cost now,
  /// minus its improvement of needs that are already satisfied, plus a second module of its ID if
  /// it does not satisfy all open needs of that ID, which no carrier satisfies either.
  PlanCost BoundCost(std::uint32_t module) const;

  /// The same, plus what the module costs for the open needs that it satisfies.
  PlanCost EstimateCost(std::uint32_t module) const;

  // ---- Selection

  bool IsSelected(std::uint32_t module) const { return m_isSelected[module] != 0; }
  bool IsBanned(std::uint32_t module) const { return m_isBanned[module] != 0; }
  bool IsIdSelected(std::uint32_t id) const { return m_selectedOfId[id] > 0; }

  /// The number of selected modules that have a need.
  std::uint32_t Uses(std::uint32_t need) const { return m_uses[need]; }

  /// The best rank of a selected candidate for a need; kNone if none is selected.
  std::uint32_t Server(std::uint32_t need) const { return m_server[need]; }
  bool IsServed(std::uint32_t need) const { return m_server[need] != kNone; }

  /// Selects a module. Adds its needs that become open to `open`, and the module and its cost to
  /// `answer`.
  void Select(std::uint32_t module, Numbers& open, Answer& answer);

  /// Keeps a module from being selected.
  void Ban(std::uint32_t module) { Set(m_isBanned, module, 1); }

  /// Selects the modules that every answer contains, until every open need has a choice. Removes
  /// satisfied needs from `open`. Returns false if an open need has no candidate left.
  bool Propagate(Numbers& open, Answer& answer);

  /// Returns an answer that satisfies the open needs one after the other with what looks cheapest;
  /// its cost is MakeHighestCost() if a need has no candidate left. Leaves the selection unchanged.
  Answer Complete(Numbers open);

  /// Returns the IDs of which every answer has a module, with the candidates: the IDs of open
  /// needs, and those that all candidates for one of them need.
  std::vector<Certain> FindCertain(const Numbers& open);

  /// UndoTo takes back what was selected and banned after a mark.
  size_t Mark() const noexcept { return m_trail.size(); }
  void UndoTo(size_t mark);

  // ---- Steps

  void CountSteps(std::uint64_t count) noexcept { m_steps += count; }
  std::uint64_t Steps() const noexcept { return m_steps; }
  void ClearSteps() noexcept { m_steps = 0; }

 private:
  struct Service {
    std::uint32_t need;
    std::uint32_t rank;  ///< of the module among the candidates, from 1
  };

  static constexpr std::uint32_t kProvided = 0;  ///< the rank of what Provide provides

  struct Undo {
    Numbers* list;
    std::uint32_t index;
    std::uint32_t old;
  };

  void Set(Numbers& list, std::uint32_t index, std::uint32_t value);

  PlanCost ServiceCost(std::uint32_t need, std::uint32_t rank) const {
    return rank == kProvided ? PlanCost{} : m_problem.Needs()[need].candidates[rank - 1].Cost();
  }

  bool IsOpen(std::uint32_t need) const { return m_uses[need] > 0 && m_server[need] == kNone; }

  const PlanProblem& m_problem;
  std::uint64_t m_steps = 0;

  std::vector<std::vector<Service>> m_services;  ///< by module: the needs that it satisfies
  std::vector<Numbers> m_carriedNeeds;           ///< by module
  std::vector<PlanCost> m_costs;                 ///< by module, regardless of what else is planned
  std::vector<Numbers> m_pairs;           ///< by module: those that must not be merged with it
  std::vector<Numbers> m_combinations;    ///< of three or more modules, sorted
  std::vector<Numbers> m_combinationsOf;  ///< by module

  Numbers m_isSelected;  ///< by module
  Numbers m_isBanned;
  Numbers m_uses;      ///< by need: number of selected modules that have it
  Numbers m_server;    ///< by need: best rank of a selected candidate
  Numbers m_openOfId;  ///< by ID: number of open needs without carriers
  Numbers m_selectedOfId;
  std::vector<Undo> m_trail;
};

}  // namespace qm::merge
