#include "merge/PlanSolver.h"

#include <algorithm>
#include <utility>

namespace qm::merge {

PlanSolver::PlanSolver(const ModuleIndex& set, const std::vector<size_t>& wanted,
                       PlanProblem::Extent extent, const PlanOptions& options)
    : m_problem(set, wanted, extent),
      m_search(m_problem, options.maxSteps),
      m_findObjections(options.findObjections) {}

PlanSearch::Result PlanSolver::Solve(const Numbers& wanted, std::uint64_t maxSteps) {
  PlanSearch::Result result = Search(wanted);
  if (!m_findObjections) {
    return result;
  }
  for (int round = 0; Learn(result.modules); ++round) {
    if (round == kMaxPlanRounds || m_steps >= maxSteps) {
      result.isProven = false;
      break;
    }
    result = Search(wanted);
  }
  return result;
}

PlanSearch::Result PlanSolver::Search(const Numbers& wanted) {
  PlanSearch::Result result = m_search.Solve(wanted);
  m_steps += m_search.Steps();
  return result;
}

/// Asks for objections to a plan and returns whether there are new ones.
bool PlanSolver::Learn(const Numbers& plan) {
  std::vector<size_t> positions;
  positions.reserve(plan.size());
  for (const std::uint32_t module : plan) {
    positions.push_back(m_problem.Modules()[module].position);
  }
  std::sort(positions.begin(), positions.end());
  m_steps += kStepsOfCheckedModule * positions.size();
  bool isNew = false;
  for (Objection& objection : m_findObjections(positions)) {
    Numbers modules;
    for (const size_t position : objection.modules) {
      modules.push_back(m_problem.FindModule(position));
    }
    std::sort(modules.begin(), modules.end());
    modules.erase(std::unique(modules.begin(), modules.end()), modules.end());
    if (modules.empty() || modules.back() == PlanProblem::kNone) {
      continue;
    }
    const Numbers& excluded = m_problem.Modules()[modules.front()].excludedWith;
    const bool isExclusion =
        modules.size() == 2 && std::binary_search(excluded.begin(), excluded.end(), modules[1]);
    if (!isExclusion && m_objections.try_emplace(modules, std::move(objection.text)).second) {
      m_search.AddObjection(modules);
      isNew = true;
    }
  }
  return isNew;
}

const std::string& PlanSolver::FindText(const Numbers& objection) const {
  static const std::string none;
  const auto found = m_objections.find(objection);
  return found == m_objections.end() ? none : found->second;
}

std::uint32_t PlanSolver::FindProvider(const Numbers& plan, std::uint32_t need) const {
  for (const PlanProblem::Option& candidate : m_problem.Needs()[need].candidates) {
    if (std::binary_search(plan.begin(), plan.end(), candidate.module)) {
      return candidate.module;
    }
  }
  return PlanProblem::kNone;
}

}  // namespace qm::merge
