#include "merge/PlanConflicts.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "merge/JoinTexts.h"
#include "merge/PlanSolver.h"
#include "merge/PossibleModule.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

using Numbers = PlanSolver::Numbers;

constexpr std::uint32_t kNone = PlanProblem::kNone;

/// What is wrong with a plan: modules that must not be merged together, or one whose requirements
/// are missing.
struct Violation {
  bool isMissing = false;
  Numbers modules;
};

class ConflictFinder {
 public:
  ConflictFinder(const ModuleIndex& set, const std::vector<size_t>& wanted,
                 const PlanOptions& options)
      : m_solver(set, wanted, PlanProblem::Extent::AnySubset, options),
        m_problem(m_solver.Problem()),
        m_isIgnored(m_problem.Modules().size()) {
    for (const size_t position : wanted) {
      const std::uint32_t module = m_problem.FindModule(position);
      if (std::find(m_wanted.begin(), m_wanted.end(), module) == m_wanted.end()) {
        m_wanted.push_back(module);
      }
    }
  }

  std::vector<PlanConflict> Find() {
    std::vector<PlanConflict> conflicts;
    PlanSearch::Result planned = Solve(m_wanted);
    while (conflicts.size() < kMaxPlanConflicts && (conflicts.empty() || MaySolve())) {
      std::optional<Violation> violation = FindViolation(planned.modules);
      if (!violation) {
        break;
      }
      const auto [wanted, isComplete] = Minimize(planned.modules, *violation);
      PlanSearch::Result result = Solve(wanted);
      Numbers smallest = std::move(result.modules);
      std::optional<Violation> first = FindViolation(smallest);
      const bool isMinimal = isComplete && result.isProven && first;
      if (first) {
        violation = std::move(first);
      } else {  // only if the search ended at its bound
        smallest = planned.modules;
      }
      std::vector<Description> described = Describe(wanted, smallest, *violation);
      if (!violation->isMissing) {
        AddFixWithReplacement(*violation, smallest, planned.cost, described.front().conflict);
      }
      Ignore(*violation);
      const PlanCost before = planned.cost;
      planned = Solve(m_wanted);
      for (Description& one : described) {
        one.conflict.isMinimal = isMinimal;
        if (conflicts.size() < kMaxPlanConflicts) {
          if (one.missing) {
            AddFixWithMissing(*one.missing, planned.modules, before, one.conflict);
          }
          conflicts.push_back(std::move(one.conflict));
        }
      }
    }
    return conflicts;
  }

 private:
  struct Description {
    PlanConflict conflict;
    const Requirement* missing;  ///< which no module satisfies; null for an objection
  };

  bool MaySolve() const {
    return m_plans < kMaxConflictPlans && m_solver.Steps() < kMaxConflictSteps;
  }

  PlanSearch::Result Solve(const Numbers& wanted) {
    ++m_plans;
    return m_solver.Solve(wanted, kMaxConflictSteps);
  }

  const Module& ModuleAt(std::uint32_t module) const {
    return m_problem.Set().Modules()[m_problem.Modules()[module].position];
  }

  const std::string& NameOf(std::uint32_t module) const {
    return GetNameInSentence(ModuleAt(module));
  }

  /// Returns the key and version of a module, which distinguish it from others of its ID.
  std::string DescribeVersion(std::uint32_t module) const {
    return NameOf(module) + ' ' + ModuleAt(module).version;
  }

  /// Returns the key of a wanted module, with its version and path if others have the same key.
  std::string DescribeWanted(std::uint32_t module) const {
    const auto hasSameKey = [&](std::uint32_t other) {
      return text::FoldCase(ModuleAt(other).key) == text::FoldCase(ModuleAt(module).key);
    };
    return std::count_if(m_wanted.begin(), m_wanted.end(), hasSameKey) < 2
               ? NameOf(module)
               : DescribeVersion(module) + " (" + GetFileInSentence(ModuleAt(module)) + ')';
  }

  /// Returns the first thing that is wrong with a plan.
  std::optional<Violation> FindViolation(const Numbers& plan) const {
    for (const std::uint32_t module : plan) {
      if (m_problem.Modules()[module].cost[PlanCost::Missing] > 0 && !m_isIgnored[module]) {
        return Violation{true, {module}};
      }
    }
    Numbers objection = m_solver.Search().FindObjection(plan);
    return objection.empty() ? std::nullopt : std::optional(Violation{false, std::move(objection)});
  }

  bool IsClean(const Numbers& plan) const { return !FindViolation(plan); }

  struct Minimized {
    Numbers wanted;
    bool isComplete;  ///< leaving out was tried for each
  };

  /// Returns wanted modules that only together cause a violation: without any one of them, none
  /// remains. Begins with those that lead to `violation`, and tries to leave out one after the
  /// other.
  Minimized Minimize(const Numbers& plan, const Violation& violation) {
    Numbers sources;
    for (const Numbers& chain : FindChains(m_wanted, plan, violation.modules)) {
      sources.push_back(chain.front());
    }
    Numbers needed;
    std::copy_if(m_wanted.begin(), m_wanted.end(), std::back_inserter(needed),
                 [&](std::uint32_t module) {
                   return std::find(sources.begin(), sources.end(), module) != sources.end();
                 });
    if (needed.empty() || IsClean(Solve(needed).modules)) {
      needed = m_wanted;
    }
    size_t at = 0;
    while (needed.size() > 1 && at < needed.size() && MaySolve()) {
      Numbers fewer = needed;
      fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(at));
      if (IsClean(Solve(fewer).modules)) {
        ++at;
      } else {
        needed = std::move(fewer);
      }
    }
    const bool isComplete = needed.size() == 1 || at == needed.size();
    return {std::move(needed), isComplete};
  }

  /// Modules of a plan that some modules lead to, nearest first.
  struct Reached {
    Numbers order;
    std::vector<std::uint32_t>
        neededBy;  ///< by module; itself for the first ones, kNone if not led to

    Numbers ChainTo(std::uint32_t module) const {
      Numbers chain{module};
      while (neededBy[chain.back()] != chain.back()) {
        chain.push_back(neededBy[chain.back()]);
      }
      std::reverse(chain.begin(), chain.end());
      return chain;
    }
  };

  Reached Reach(const Numbers& from, const Numbers& plan) const {
    Reached reached{{}, std::vector<std::uint32_t>(m_problem.Modules().size(), kNone)};
    const auto visit = [&](std::uint32_t module, std::uint32_t user) {
      if (reached.neededBy[module] == kNone) {
        reached.neededBy[module] = user;
        reached.order.push_back(module);
      }
    };
    for (const std::uint32_t module : from) {
      visit(module, module);
    }
    for (size_t next = 0; next < reached.order.size(); ++next) {
      const std::uint32_t user = reached.order[next];
      for (const std::uint32_t need : m_problem.Modules()[user].needs) {
        if (const std::uint32_t provider = m_solver.FindProvider(plan, need); provider != kNone) {
          visit(provider, user);
        }
      }
    }
    return reached;
  }

  /// Returns the shortest chain from a wanted module to each target in the plan.
  std::vector<Numbers> FindChains(const Numbers& wanted, const Numbers& plan,
                                  const Numbers& targets) const {
    const Reached reached = Reach(wanted, plan);
    std::vector<Numbers> chains;
    for (const std::uint32_t target : targets) {
      if (reached.neededBy[target] != kNone) {
        chains.push_back(reached.ChainTo(target));
      }
    }
    return chains;
  }

  /// Appends a chain for each wanted module without one: to the nearest module that keeps the
  /// targets from being replaced, since it excludes or is excluded by a module with an ID of
  /// theirs.
  void AppendOtherChains(const Numbers& wanted, const Numbers& plan, const Numbers& targets,
                         std::vector<Numbers>& chains) const {
    constexpr size_t kMaxSearches = 32;
    std::set<std::uint32_t> ids;
    for (const std::uint32_t target : targets) {
      ids.insert(m_problem.Modules()[target].id);
    }
    std::set<std::uint32_t> sources;
    for (const Numbers& chain : chains) {
      sources.insert(chain.front());
    }
    size_t searches = 0;
    for (const std::uint32_t module : wanted) {
      if (sources.count(module) == 0) {
        chains.push_back(searches++ < kMaxSearches ? FindChainTo(ids, module, plan)
                                                   : Numbers{module});
      }
    }
  }

  /// Returns the shortest chain from a wanted module to one that objects to a module of these IDs,
  /// or has one of them; otherwise, the wanted module alone.
  Numbers FindChainTo(const std::set<std::uint32_t>& ids, std::uint32_t wanted,
                      const Numbers& plan) const {
    const auto hasId = [&](std::uint32_t module) {
      return ids.count(m_problem.Modules()[module].id) != 0;
    };
    const Reached reached = Reach({wanted}, plan);
    for (const std::uint32_t module : reached.order) {
      const Numbers opponents = m_solver.Search().FindOpponents(module);
      if (hasId(module) || std::any_of(opponents.begin(), opponents.end(), hasId)) {
        return reached.ChainTo(module);
      }
    }
    return {wanted};
  }

  std::vector<size_t> PositionsOf(const Numbers& modules) const {
    std::vector<size_t> positions;
    positions.reserve(modules.size());
    for (const std::uint32_t module : modules) {
      positions.push_back(m_problem.Modules()[module].position);
    }
    return positions;
  }

  std::vector<size_t> InOrderOfSet(const Numbers& modules) const {
    std::vector<size_t> positions = PositionsOf(modules);
    std::sort(positions.begin(), positions.end());
    return positions;
  }

  /// Describes a violation of the plan for some of the wanted modules: one conflict for each
  /// missing requirement, or one for an objection.
  std::vector<Description> Describe(const Numbers& wanted, const Numbers& plan,
                                    const Violation& violation) {
    PlanConflict conflict;
    conflict.wanted = PositionsOf(wanted);
    conflict.modules = PositionsOf(violation.modules);
    Numbers onChains;
    std::vector<Numbers> chains = FindChains(wanted, plan, violation.modules);
    AppendOtherChains(wanted, plan, violation.modules, chains);
    for (const Numbers& chain : chains) {
      conflict.chains.push_back(PositionsOf(chain));
      onChains.insert(onChains.end(), chain.begin() + 1, chain.end());
    }
    for (const std::uint32_t module : wanted) {
      AddFixWithout(module, wanted, plan, conflict);
    }
    const std::string others = ExplainOthers(wanted, onChains, violation);
    if (!violation.isMissing) {
      conflict.text = ExplainObjection(violation.modules) + others;
      return {{conflict, nullptr}};
    }
    std::vector<Description> descriptions;
    const std::uint32_t user = violation.modules.front();
    for (const Requirement* const requirement : FindMissing(user)) {
      conflict.text = NameOf(user) + " needs " + FormatRequirement(*requirement) + ": " +
                      m_problem.Set().ExplainMissing(*requirement) + others;
      descriptions.push_back({conflict, requirement});
    }
    return descriptions;
  }

  /// Returns the first kMaxPlanConflicts requirements of a module that no module satisfies.
  std::vector<const Requirement*> FindMissing(std::uint32_t module) const {
    const std::vector<std::uint32_t>& needs = m_problem.Modules()[module].rowNeeds;
    std::vector<const Requirement*> missing;
    for (size_t row = 0; row < needs.size() && missing.size() < kMaxPlanConflicts; ++row) {
      if (needs[row] != kNone && m_problem.Needs()[needs[row]].candidates.empty()) {
        missing.push_back(&ModuleAt(module).requirements[row]);
      }
    }
    return missing;
  }

  /// Why one module excludes another.
  struct ExclusionRow {
    const Exclusion* row;
    const ModuleSignature* carried;  ///< what is excluded; null for the excluded module itself
  };

  /// Returns the first row with which one module excludes another or a module that it carries.
  std::optional<ExclusionRow> FindExclusion(std::uint32_t excluding, std::uint32_t excluded) const {
    const size_t position = m_problem.Modules()[excluding].position;
    const Module& module = ModuleAt(excluded);
    for (const Exclusion& row : ModuleAt(excluding).exclusions) {
      if (!row.moduleId.empty() &&
          Excludes(row, module.moduleId, module.language, module.version)) {
        return ExclusionRow{&row, nullptr};
      }
      if (module.carried.empty()) {
        continue;
      }
      for (const auto& [other, carried] : m_problem.Set().FindExcluded(position, row)) {
        if (carried && other == m_problem.Modules()[excluded].position) {
          return ExclusionRow{&row, carried};
        }
      }
    }
    return std::nullopt;
  }

  std::string ExplainObjection(const Numbers& modules) const {
    if (const std::string& text = m_solver.FindText(modules); !text.empty()) {
      return text;
    }
    for (const auto& [excluding, excluded] :
         {std::pair(modules.front(), modules.back()), {modules.back(), modules.front()}}) {
      if (const auto found = FindExclusion(excluding, excluded)) {
        const std::string text =
            NameOf(excluding) + " excludes " + FormatExcludedVersions(*found->row) + " of ";
        return found->carried
                   ? text + FormatCarried(*found->carried) + ", which " + NameOf(excluded) +
                         " carries"
                   : text + NameOf(excluded) + ", which has version " + ModuleAt(excluded).version;
      }
    }
    std::vector<std::string> names;
    for (const std::uint32_t module : modules) {
      names.push_back(NameOf(module));
    }
    return JoinTexts(names, " and ") + " cannot be merged together";
  }

  /// Explains why other candidates do not help. Plans without each of the last few modules on the
  /// chains, and returns a clause for each plan that has another violation.
  std::string ExplainOthers(const Numbers& wanted, const Numbers& onChains,
                            const Violation& violation) {
    constexpr size_t kMaxOthers = 3;
    std::string text;
    size_t tried = 0;
    for (auto module = onChains.rbegin();
         module != onChains.rend() && tried < kMaxOthers && MaySolve(); ++module, ++tried) {
      m_solver.Search().Avoid(*module);
      const Numbers plan = Solve(wanted).modules;
      m_solver.Search().Permit(*module);
      const auto isOther = [&](std::uint32_t one) {
        return m_problem.Modules()[one].id == m_problem.Modules()[*module].id;
      };
      const auto other = std::find_if(plan.begin(), plan.end(), isOther);
      const std::optional<Violation> first = FindViolation(plan);
      if (other == plan.end() || !first || std::binary_search(plan.begin(), plan.end(), *module)) {
        continue;
      }
      if (first->modules != violation.modules) {
        text += "; with " + DescribeVersion(*other) + " instead of " + DescribeVersion(*module) +
                ", " +
                (first->isMissing ? NameOf(first->modules.front()) + " lacks a module"
                                  : ExplainObjection(first->modules));
      }
    }
    return text;
  }

  /// Plans without one of the wanted modules, and adds that as a fix if it resolves the conflict.
  void AddFixWithout(std::uint32_t dropped, const Numbers& wanted, const Numbers& before,
                     PlanConflict& conflict) {
    if (m_wanted.size() == 1 || !MaySolve()) {
      return;
    }
    Numbers rest = m_wanted;
    rest.erase(std::remove(rest.begin(), rest.end(), dropped), rest.end());
    const Numbers plan = Solve(rest).modules;
    const bool isClean = IsClean(plan);
    const bool isMergeable =
        isClean &&
        std::none_of(m_ignored.begin(), m_ignored.end(), [&](const Violation& violation) {
          return std::includes(plan.begin(), plan.end(), violation.modules.begin(),
                               violation.modules.end());
        });
    Numbers others = wanted;
    others.erase(std::remove(others.begin(), others.end(), dropped), others.end());
    if (!isClean && !others.empty() && !IsClean(Solve(others).modules)) {
      return;
    }
    PlanFix fix;
    fix.drop = PositionsOf({dropped});
    fix.modules = InOrderOfSet(plan);
    fix.text = "without " + DescribeWanted(dropped) +
               (isMergeable ? " the rest can be merged" : " this conflict does not arise");
    for (const std::uint32_t module : plan) {
      const auto isLower = [&](std::uint32_t one) {
        return m_problem.Modules()[one].id == m_problem.Modules()[module].id &&
               CompareVersionTexts(ModuleAt(one).version, ModuleAt(module).version) < 0;
      };
      if (std::find(m_wanted.begin(), m_wanted.end(), module) == m_wanted.end() &&
          !std::binary_search(before.begin(), before.end(), module) &&
          std::any_of(before.begin(), before.end(), isLower)) {
        fix.text += ", with " + DescribeVersion(module);
      }
    }
    conflict.fixes.push_back(std::move(fix));
  }

  void Ignore(const Violation& violation) {
    m_ignored.push_back(violation);
    if (violation.isMissing) {
      m_isIgnored[violation.modules.front()] = true;
      m_solver.Search().IgnoreMissing(violation.modules.front());
    } else {
      m_solver.Search().RemoveObjection(violation.modules);
    }
  }

  /// Adds as a fix a module that the set lacks and that would satisfy a requirement. `plan` is the
  /// plan that ignores the requirement, `before` the cost of the one that does not.
  void AddFixWithMissing(const Requirement& requirement, const Numbers& plan,
                         const PlanCost& before, PlanConflict& conflict) {
    if (requirement.moduleId.empty()) {
      return;
    }
    if (const auto fixed = SolveWithModule({&requirement}, plan, before)) {
      conflict.fixes.push_back(
          {"a module " + FormatWanted(requirement) + " is missing", {}, InOrderOfSet(*fixed)});
    }
  }

  /// Adds as a fix a module that the set lacks and that would replace an excluded one. `plan` is
  /// the plan with both modules, `before` the cost of the one for all wanted modules.
  void AddFixWithReplacement(const Violation& violation, const Numbers& plan,
                             const PlanCost& before, PlanConflict& conflict) {
    if (violation.modules.size() != 2) {
      return;
    }
    const std::uint32_t first = violation.modules.front();
    const std::uint32_t second = violation.modules.back();
    for (const auto& [excluding, excluded] : {std::pair(first, second), {second, first}}) {
      const auto found = FindExclusion(excluding, excluded);
      if (!found || found->carried ||
          std::find(m_wanted.begin(), m_wanted.end(), excluded) != m_wanted.end()) {
        continue;
      }
      Numbers others = plan;
      others.erase(std::remove(others.begin(), others.end(), excluded), others.end());
      if (const auto fixed = SolveWithModule(FindServed(excluded, plan), others, before)) {
        conflict.fixes.push_back({"a module " + ModuleAt(excluded).moduleId + " that " +
                                      NameOf(excluding) + " does not exclude is missing",
                                  {},
                                  InOrderOfSet(*fixed)});
        return;
      }
    }
  }

  /// Returns the requirements of planned modules that a module satisfies itself in a plan.
  std::vector<const Requirement*> FindServed(std::uint32_t module, const Numbers& plan) const {
    std::vector<const Requirement*> served;
    for (const std::uint32_t user : plan) {
      const std::vector<std::uint32_t>& needs = m_problem.Modules()[user].rowNeeds;
      for (size_t row = 0; row < needs.size(); ++row) {
        if (needs[row] != kNone &&
            m_problem.Needs()[needs[row]].id == m_problem.Modules()[module].id &&
            m_solver.FindProvider(plan, needs[row]) == module) {
          served.push_back(&ModuleAt(user).requirements[row]);
        }
      }
    }
    return served;
  }

  /// Plans with a module that the set lacks, which satisfies some requirements and which nothing in
  /// the plan excludes. `plan` is a plan in which such a module could take its place. Returns the
  /// new plan, without that module; std::nullopt if it does not lack less than a plan of the cost
  /// `before`, or if no such module can exist.
  std::optional<Numbers> SolveWithModule(const std::vector<const Requirement*>& requirements,
                                         Numbers plan, const PlanCost& before) {
    constexpr int kMaxAttempts = 3;
    if (requirements.empty()) {
      return std::nullopt;
    }
    const std::string id = text::FoldCase(requirements.front()->moduleId);
    std::vector<const Exclusion*> exclusions;
    for (int attempt = 0; attempt < kMaxAttempts && MaySolve(); ++attempt) {
      AppendExclusions(plan, id, exclusions);
      const std::optional<ModuleSignature> added = FindPossibleModule(requirements, exclusions);
      if (!added) {
        return std::nullopt;
      }
      PlanSearch::Result result = SolveProvided(FindNeeds(*added));
      if (!(FaultsOf(result.cost) < FaultsOf(before)) || HasId(result.modules, id)) {
        return std::nullopt;
      }
      plan = std::move(result.modules);
      if (!IsExcluded(*added, plan)) {
        return plan;
      }
    }
    return std::nullopt;
  }

  static std::pair<std::int64_t, std::int64_t> FaultsOf(const PlanCost& cost) {
    return {cost[PlanCost::Missing], cost[PlanCost::Objections]};
  }

  /// Plans with some needs satisfied by something outside the set.
  PlanSearch::Result SolveProvided(const Numbers& needs) {
    for (const std::uint32_t need : needs) {
      m_solver.Search().Provide(need);
    }
    PlanSearch::Result result = Solve(m_wanted);
    for (const std::uint32_t need : needs) {
      m_solver.Search().Withdraw(need);
    }
    return result;
  }

  /// Returns the needs that a module satisfies.
  Numbers FindNeeds(const ModuleSignature& satisfying) const {
    Numbers found;
    for (const PlanProblem::Node& node : m_problem.Modules()) {
      const Module& module = m_problem.Set().Modules()[node.position];
      for (size_t row = 0; row < node.rowNeeds.size(); ++row) {
        if (node.rowNeeds[row] != kNone && Satisfies(module.requirements[row], satisfying.moduleId,
                                                     *satisfying.language, satisfying.version)) {
          found.push_back(node.rowNeeds[row]);
        }
      }
    }
    return found;
  }

  /// Appends the exclusions of a plan that concern an ID.
  void AppendExclusions(const Numbers& plan, const std::string& id,
                        std::vector<const Exclusion*>& exclusions) const {
    for (const std::uint32_t module : plan) {
      for (const Exclusion& exclusion : ModuleAt(module).exclusions) {
        if (text::FoldCase(exclusion.moduleId) == id) {
          exclusions.push_back(&exclusion);
        }
      }
    }
  }

  bool IsExcluded(const ModuleSignature& module, const Numbers& plan) const {
    return std::any_of(plan.begin(), plan.end(), [&](std::uint32_t one) {
      const std::vector<Exclusion>& exclusions = ModuleAt(one).exclusions;
      return std::any_of(exclusions.begin(), exclusions.end(), [&](const Exclusion& exclusion) {
        return Excludes(exclusion, module.moduleId, *module.language, module.version);
      });
    });
  }

  /// Returns whether a plan has a module of an ID, or one that carries such a module.
  bool HasId(const Numbers& plan, const std::string& id) const {
    return std::any_of(plan.begin(), plan.end(), [&](std::uint32_t one) {
      const std::vector<ModuleSignature>& carried = ModuleAt(one).carried;
      return text::FoldCase(ModuleAt(one).moduleId) == id ||
             std::any_of(carried.begin(), carried.end(), [&](const ModuleSignature& signature) {
               return text::FoldCase(signature.moduleId) == id;
             });
    });
  }

  static std::string FormatWanted(const Requirement& requirement) {
    std::string text = requirement.moduleId;
    if (requirement.language.value_or(0) != 0) {
      text += " for " + std::to_string(*requirement.language);
    }
    return requirement.version.empty()
               ? text
               : text + " with version " + requirement.version + " or higher";
  }

  PlanSolver m_solver;
  const PlanProblem& m_problem;
  Numbers m_wanted;
  std::vector<bool> m_isIgnored;  ///< by module: whether what it lacks is ignored
  std::vector<Violation> m_ignored;
  size_t m_plans = 0;
};

}  // namespace

std::vector<PlanConflict> FindPlanConflicts(const ModuleIndex& set,
                                            const std::vector<size_t>& wanted,
                                            const PlanOptions& options) {
  return ConflictFinder(set, wanted, options).Find();
}

}  // namespace qm::merge
