#include "merge/MergePlan.h"

#include <algorithm>
#include <set>
#include <utility>

#include "merge/JoinTexts.h"
#include "merge/PlanSolver.h"

namespace qm::merge {

namespace {

constexpr size_t kMaxCycleModules = 100000;
constexpr std::uint32_t kNone = PlanProblem::kNone;

/// Puts the modules of a solved plan into merge order and explains them. Walks requirements depth
/// first and keeps an explicit stack, so that the thread's stack does not limit the depth.
class PlanWriter {
 public:
  PlanWriter(const PlanProblem& problem, const PlanSolver::Numbers& plan)
      : m_problem(problem),
        m_states(m_problem.Modules().size()),
        m_firstRows(m_problem.Modules().size()),
        m_providers(m_problem.Needs().size(), kNone),
        m_isPlanned(m_problem.Modules().size()),
        m_isAsked(m_problem.Needs().size()),
        m_needs(m_problem.Modules().size()) {
    for (const std::uint32_t module : plan) {
      m_isPlanned[module] = true;
    }
  }

  void Add(std::uint32_t wanted) {
    Enter(wanted, kNone, 0);
    while (!m_path.empty()) {
      Step();
    }
  }

  MergePlan Take() {
    std::vector<std::uint32_t> lastUsers(m_problem.Modules().size(), kNone);
    for (const std::uint32_t module : m_order) {
      m_plan.modules.push_back(Explain(module));
      for (const std::uint32_t need : At(module).needs) {
        const std::uint32_t provider = m_providers[need];
        if (lastUsers[provider] != module) {
          lastUsers[provider] = module;
          m_plan.modules.back().needs.push_back(At(provider).position);
        }
      }
    }
    return std::move(m_plan);
  }

 private:
  enum class State { New, Open, Done };

  struct Visit {
    std::uint32_t module;
    size_t nextRow = 0;
  };

  /// The requirement for which a module was planned first.
  struct Row {
    std::uint32_t user = kNone;  ///< kNone for a wanted module
    size_t row = 0;
  };

  const PlanProblem::Node& At(std::uint32_t module) const { return m_problem.Modules()[module]; }

  const Module& ModuleAt(std::uint32_t module) const {
    return m_problem.Set().Modules()[At(module).position];
  }

  void Enter(std::uint32_t module, std::uint32_t user, size_t row) {
    if (m_states[module] == State::New) {
      m_states[module] = State::Open;
      m_firstRows[module] = {user, row};
      m_path.push_back({module});
    } else if (m_states[module] == State::Open) {
      RecordCycle(module);
    }
  }

  void Step() {
    Visit& visit = m_path.back();
    const std::uint32_t module = visit.module;
    if (visit.nextRow == At(module).rowNeeds.size()) {
      m_states[module] = State::Done;
      m_order.push_back(module);
      m_path.pop_back();
      return;
    }
    const size_t row = visit.nextRow++;
    const std::uint32_t need = At(module).rowNeeds[row];
    if (need == kNone) {
      return;
    }
    const std::uint32_t provider = FindProvider(need);
    if (provider != kNone) {
      Enter(provider, module, row);
      return;
    }
    const Requirement& requirement = ModuleAt(module).requirements[row];
    m_plan.missing.push_back(
        {At(module).position, requirement, m_problem.Set().ExplainMissing(requirement)});
  }

  std::uint32_t FindProvider(std::uint32_t need) {
    if (!m_isAsked[need]) {
      m_isAsked[need] = true;
      for (const PlanProblem::Option& candidate : m_problem.Needs()[need].candidates) {
        if (m_isPlanned[candidate.module]) {
          m_providers[need] = candidate.module;
          m_needs[candidate.module].push_back(need);
          break;
        }
      }
    }
    return m_providers[need];
  }

  /// Records the cycle that a requirement of the last module on the path closes, once for each pair
  /// of modules.
  void RecordCycle(std::uint32_t module) {
    if (m_cycleModules >= kMaxCycleModules ||
        !m_closed.emplace(m_path.back().module, module).second) {
      return;
    }
    const auto first = std::find_if(m_path.begin(), m_path.end(),
                                    [&](const Visit& visit) { return visit.module == module; });
    std::vector<size_t> cycle;
    for (auto visit = first; visit != m_path.end(); ++visit) {
      cycle.push_back(At(visit->module).position);
    }
    m_cycleModules += cycle.size();
    m_plan.cycles.push_back(std::move(cycle));
  }

  PlannedModule Explain(std::uint32_t module) const {
    const auto& [user, row] = m_firstRows[module];
    if (user == kNone) {
      return {At(module).position, std::nullopt, "asked for"};
    }
    PlannedModule planned{At(module).position, At(user).position, "the only candidate"};
    const std::vector<std::uint32_t> alternatives = FindAlternatives(module);
    for (const std::uint32_t alternative : alternatives) {
      planned.alternatives.push_back(At(alternative).position);
    }
    const std::uint32_t need = At(user).rowNeeds[row];
    const auto& candidates = m_problem.Needs()[need].candidates;
    if (candidates.size() > 1 && !alternatives.empty()) {
      planned.reason = ExplainChosen(module, user, row, planned.alternatives);
      return planned;
    }
    if (candidates.size() > 1) {
      planned.reason = ExplainOnly(module, need);
    }
    if (const ModuleSignature* const carried = FindCarried(module, user, row)) {
      planned.reason = "carries " + FormatCarried(*carried) + ", " + planned.reason;
    }
    return planned;
  }

  /// Returns the carried module with which a module satisfies a requirement; null if it satisfies
  /// it itself.
  const ModuleSignature* FindCarried(std::uint32_t module, std::uint32_t user, size_t row) const {
    const std::uint32_t need = At(user).rowNeeds[row];
    if (!m_problem.Needs()[need].hasCarriers) {
      return nullptr;
    }
    for (const Candidate& candidate :
         m_problem.FindCandidates(ModuleAt(user).requirements[row], ModuleAt(user))) {
      if (candidate.module == At(module).position) {
        return candidate.carried;
      }
    }
    return nullptr;
  }

  /// Returns the modules outside the plan that satisfy every need that `module` satisfies in it,
  /// best first.
  std::vector<std::uint32_t> FindAlternatives(std::uint32_t module) const {
    const std::vector<std::uint32_t>& needs = m_needs[module];
    std::vector<std::uint32_t> alternatives;
    for (const PlanProblem::Option& candidate : m_problem.Needs()[needs.front()].candidates) {
      if (!m_isPlanned[candidate.module]) {
        alternatives.push_back(candidate.module);
      }
    }
    std::vector<std::uint32_t> others;
    for (size_t at = 1; at < needs.size() && !alternatives.empty(); ++at) {
      others.clear();
      for (const PlanProblem::Option& candidate : m_problem.Needs()[needs[at]].candidates) {
        others.push_back(candidate.module);
      }
      std::sort(others.begin(), others.end());
      const auto isOut = [&](std::uint32_t one) {
        return !std::binary_search(others.begin(), others.end(), one);
      };
      alternatives.erase(std::remove_if(alternatives.begin(), alternatives.end(), isOut),
                         alternatives.end());
    }
    return alternatives;
  }

  std::string ExplainOnly(std::uint32_t module, std::uint32_t need) const {
    const auto& candidates = m_problem.Needs()[need].candidates;
    const bool othersPlanned = std::any_of(
        candidates.begin(), candidates.end(), [&](const PlanProblem::Option& candidate) {
          return candidate.module != module && m_isPlanned[candidate.module];
        });
    return othersPlanned ? "the best one in the plan" : "the only candidate for all that need it";
  }

  std::string ExplainChosen(std::uint32_t module, std::uint32_t user, size_t row,
                            std::vector<size_t> alternatives) const {
    std::sort(alternatives.begin(), alternatives.end());
    const size_t chosen = At(module).position;
    const Requirement& requirement = ModuleAt(user).requirements[row];
    std::vector<Candidate> candidates;
    std::optional<size_t> better;
    bool isBefore = true;
    for (const Candidate& candidate : m_problem.FindCandidates(requirement, ModuleAt(user))) {
      const bool isAlternative =
          std::binary_search(alternatives.begin(), alternatives.end(), candidate.module);
      isBefore = isBefore && candidate.module != chosen;
      if (isAlternative || candidate.module == chosen) {
        candidates.push_back(candidate);
      }
      if (isAlternative && isBefore && !better) {
        better = candidate.module;
      }
    }
    std::vector<std::string> reasons;
    if (const std::string fit = ExplainChoice(m_problem.Set(), requirement, candidates, chosen);
        !fit.empty()) {
      reasons.push_back(fit);
    }
    if (better) {
      reasons.push_back("rather than " + ExplainRejected(m_problem.FindModule(*better)));
    }
    return JoinTexts(reasons, ", ");
  }

  /// Names a module that fits better than the chosen one, and states why the plan does not contain
  /// it.
  std::string ExplainRejected(std::uint32_t module) const {
    const std::string name = ModuleAt(module).key + ' ' + ModuleAt(module).version;
    for (const std::uint32_t other : At(module).excludedWith) {
      if (m_isPlanned[other]) {
        return name + ", which cannot be merged with " + ModuleAt(other).key;
      }
    }
    return name + (At(module).cost[PlanCost::Missing] > 0
                       ? ", which needs a module that is missing"
                       : ", which would make the plan as a whole worse");
  }

  const PlanProblem& m_problem;
  std::vector<State> m_states;
  std::vector<Row> m_firstRows;
  std::vector<std::uint32_t> m_providers;  ///< by need
  std::vector<bool> m_isPlanned;
  std::vector<bool> m_isAsked;                      ///< by need: whether m_providers is determined
  std::vector<std::vector<std::uint32_t>> m_needs;  ///< by module: those that it satisfies
  std::vector<Visit> m_path;
  std::vector<std::uint32_t> m_order;
  /// User and needed module of each requirement that closed a cycle.
  std::set<std::pair<std::uint32_t, std::uint32_t>> m_closed;
  size_t m_cycleModules = 0;
  MergePlan m_plan;
};

}  // namespace

bool IsMetWithin(const Module& module, const Requirement& requirement) {
  if (requirement.moduleId.empty()) {
    return false;
  }
  return Satisfies(requirement, module.moduleId, module.language, module.version) ||
         std::any_of(module.carried.begin(), module.carried.end(),
                     [&](const ModuleSignature& carried) {
                       return Satisfies(requirement, carried.moduleId, carried.language.value_or(0),
                                        carried.version);
                     });
}

MergePlan PlanMerge(const ModuleIndex& set, const std::vector<size_t>& wanted,
                    const PlanOptions& options) {
  PlanSolver solver(set, wanted, PlanProblem::Extent::Plan, options);
  PlanSolver::Numbers numbers;
  for (const size_t position : wanted) {
    numbers.push_back(solver.Problem().FindModule(position));
  }
  PlanSearch::Result result;
  if (solver.Problem().HasChoice()) {
    result = solver.Solve(numbers);
  } else {
    result.modules = solver.Problem().Forced();
  }
  PlanWriter writer(solver.Problem(), result.modules);
  for (const std::uint32_t module : numbers) {
    writer.Add(module);
  }
  MergePlan plan = writer.Take();
  plan.isProven = result.isProven;
  return plan;
}

}  // namespace qm::merge
