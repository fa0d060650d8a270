#include "merge/MergePlan.h"

#include <algorithm>
#include <set>
#include <utility>

#include "text/Fold.h"

namespace qm::merge {

namespace {

constexpr size_t kMaxCycleModules = 100000;

/// Walks requirements depth first. Keeps an explicit stack, so that the thread's stack does not
/// limit the depth.
class Planner {
 public:
  explicit Planner(const ModuleIndex& set) : m_set(set), m_states(set.Modules().size()) {}

  void Add(size_t wanted) {
    Enter(wanted, std::nullopt, "asked for");
    while (!m_path.empty()) {
      Step();
    }
  }

  MergePlan Take() { return std::move(m_plan); }

 private:
  enum class State { New, Open, Done };

  struct Visit {
    PlannedModule planned;
    size_t nextRequirement = 0;
  };

  void Enter(size_t module, std::optional<size_t> neededBy, std::string reason) {
    if (m_states[module] == State::New) {
      m_states[module] = State::Open;
      m_path.push_back({{module, neededBy, std::move(reason)}});
    } else if (m_states[module] == State::Open) {
      RecordCycle(module);
    }
  }

  void Step() {
    Visit& visit = m_path.back();
    const size_t module = visit.planned.module;
    const auto& requirements = m_set.Modules()[module].requirements;
    if (visit.nextRequirement == requirements.size()) {
      m_states[module] = State::Done;
      m_plan.modules.push_back(std::move(visit.planned));
      m_path.pop_back();
      return;
    }
    const Requirement& requirement = requirements[visit.nextRequirement++];
    if (IsMetWithin(m_set.Modules()[module], requirement)) {
      return;
    }
    Choice choice = m_set.Choose(requirement);
    if (choice.module) {
      Enter(*choice.module, module, std::move(choice.reason));
    } else {
      m_plan.missing.push_back({module, requirement, std::move(choice.reason)});
    }
  }

  /// Records the cycle that a requirement of the last module on the path closes, once for each pair
  /// of modules.
  void RecordCycle(size_t module) {
    if (m_cycleModules >= kMaxCycleModules ||
        !m_closed.emplace(m_path.back().planned.module, module).second) {
      return;
    }
    const auto first = std::find_if(m_path.begin(), m_path.end(), [&](const Visit& visit) {
      return visit.planned.module == module;
    });
    std::vector<size_t> cycle;
    for (auto visit = first; visit != m_path.end(); ++visit) {
      cycle.push_back(visit->planned.module);
    }
    m_cycleModules += cycle.size();
    m_plan.cycles.push_back(std::move(cycle));
  }

  const ModuleIndex& m_set;
  std::vector<State> m_states;
  std::vector<Visit> m_path;
  std::set<std::pair<size_t, size_t>> m_closed;  ///< modules whose requirement closed a cycle
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

MergePlan PlanMerge(const ModuleIndex& set, const std::vector<size_t>& wanted) {
  Planner planner(set);
  for (const size_t module : wanted) {
    planner.Add(module);
  }
  return planner.Take();
}

std::vector<ModuleUser> FindUsers(const ModuleIndex& set, const std::vector<size_t>& targets) {
  const auto& modules = set.Modules();
  std::vector<std::vector<size_t>> neededBy(modules.size());
  for (size_t position = 0; position < modules.size(); ++position) {
    for (const Requirement& requirement : modules[position].requirements) {
      if (IsMetWithin(modules[position], requirement)) {
        continue;
      }
      if (const auto chosen = set.Choose(requirement).module) {
        neededBy[*chosen].push_back(position);
      }
    }
  }
  std::vector<bool> isFound(modules.size());
  for (const size_t target : targets) {
    isFound[target] = true;
  }
  std::vector<ModuleUser> found;
  const auto addUsersOf = [&](size_t needed) {
    for (const size_t user : neededBy[needed]) {
      if (!isFound[user]) {
        isFound[user] = true;
        found.push_back({user, needed});
      }
    }
  };
  for (const size_t target : targets) {
    addUsersOf(target);
  }
  for (size_t next = 0; next < found.size(); ++next) {
    addUsersOf(found[next].module);
  }
  std::sort(found.begin(), found.end(),
            [](const ModuleUser& a, const ModuleUser& b) { return a.module < b.module; });
  return found;
}

}  // namespace qm::merge
