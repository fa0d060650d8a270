#include "merge/MergeSet.h"

#include <algorithm>

#include "merge/JoinTexts.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

/// The number of modules that satisfy a requirement, and how far each rule narrowed them down.
struct Field {
  size_t candidates = 0;
  size_t ofBestVersion = 0;
  size_t ofBestVersionAndLanguage = 0;  ///< exactly the wanted language, if a module has it
};

/// Returns the reason why a module was chosen from those that satisfy the requirement.
std::string ExplainChoice(const Requirement& requirement, const Field& field) {
  if (field.candidates == 1) {
    return "the only one";
  }
  std::vector<std::string> reasons;
  if (field.ofBestVersion < field.candidates) {
    reasons.push_back("the highest version of " + std::to_string(field.candidates));
  }
  if (field.ofBestVersionAndLanguage < field.ofBestVersion) {
    reasons.emplace_back(requirement.language == 0 ? "language-neutral"
                                                   : "of exactly this language");
  }
  if (field.ofBestVersionAndLanguage > 1) {
    reasons.push_back("the first of " + std::to_string(field.ofBestVersionAndLanguage));
  }
  if (!requirement.version.empty()) {
    reasons.push_back("at least " + requirement.version);
  }
  return JoinTexts(reasons, ", ");
}

/// Walks requirements depth first. Keeps an explicit stack, so that the thread's stack does not
/// limit the depth.
class Planner {
 public:
  explicit Planner(const MergeSet& set) : m_set(set), m_states(set.Modules().size()) {}

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

  void RecordCycle(size_t module) {
    const auto first = std::find_if(m_path.begin(), m_path.end(), [&](const Visit& visit) {
      return visit.planned.module == module;
    });
    std::vector<size_t> cycle;
    for (auto visit = first; visit != m_path.end(); ++visit) {
      cycle.push_back(visit->planned.module);
    }
    m_plan.cycles.push_back(std::move(cycle));
  }

  const MergeSet& m_set;
  std::vector<State> m_states;
  std::vector<Visit> m_path;
  MergePlan m_plan;
};

}  // namespace

MergeSet::MergeSet(const std::vector<Module>& modules) : m_modules(modules) {
  for (size_t position = 0; position < modules.size(); ++position) {
    m_byId[text::FoldCase(modules[position].moduleId)].push_back(position);
  }
}

const std::vector<size_t>& MergeSet::FindById(const std::string& moduleId) const {
  static const std::vector<size_t> none;
  const auto found = m_byId.find(text::FoldCase(moduleId));
  return found == m_byId.end() ? none : found->second;
}

std::vector<size_t> MergeSet::FindByKey(const std::string& key) const {
  std::vector<size_t> positions;
  const size_t first = std::min(key.find(':'), key.size());
  AddByIdAndLanguage(key.substr(0, first), key.substr(std::min(first + 1, key.size())), positions);
  if (first < key.size()) {
    AddByIdAndLanguage(key, "", positions);
    const size_t last = key.rfind(':');
    if (last != first) {
      AddByIdAndLanguage(key.substr(0, last), key.substr(last + 1), positions);
    }
    std::sort(positions.begin(), positions.end());
  }
  return positions;
}

/// Adds the modules of an ID and a language, or of any language if that is empty.
void MergeSet::AddByIdAndLanguage(const std::string& moduleId, const std::string& language,
                                  std::vector<size_t>& positions) const {
  for (const size_t position : FindById(moduleId)) {
    if (language.empty() || language == std::to_string(m_modules[position].language)) {
      positions.push_back(position);
    }
  }
}

Choice MergeSet::Choose(const Requirement& requirement) const {
  if (requirement.moduleId.empty()) {
    return {std::nullopt, "it names no module"};
  }
  const std::vector<size_t>& sameId = FindById(requirement.moduleId);
  if (sameId.empty()) {
    return {std::nullopt, "no module has this ID"};
  }
  std::optional<size_t> best;
  Field field;
  bool anyLanguageFits = false;
  for (const size_t position : sameId) {
    const Module& module = m_modules[position];
    anyLanguageFits = anyLanguageFits || MatchesLanguage(requirement.language, module.language);
    if (!Satisfies(requirement, module.moduleId, module.language, module.version)) {
      continue;
    }
    ++field.candidates;
    const bool isExact = requirement.language == module.language;
    const bool isBestExact = best && requirement.language == m_modules[*best].language;
    const int order = best ? CompareVersionTexts(module.version, m_modules[*best].version) : 1;
    field.ofBestVersion = order > 0 ? 1 : field.ofBestVersion + (order == 0);
    if (order > 0 || (order == 0 && isExact && !isBestExact)) {
      best = position;
      field.ofBestVersionAndLanguage = 1;
    } else if (order == 0 && isExact == isBestExact) {
      ++field.ofBestVersionAndLanguage;
    }
  }
  if (!best && !anyLanguageFits) {
    return {best, "no module of this ID is for " + std::to_string(*requirement.language)};
  }
  if (!best) {
    const bool anyLanguage = requirement.language.value_or(0) == 0;
    return {best, "every version " +
                      (anyLanguage ? "" : "for " + std::to_string(*requirement.language) + ' ') +
                      "is lower than " + requirement.version};
  }
  return {best, ExplainChoice(requirement, field)};
}

bool IsMetWithin(const Module& module, const Requirement& requirement) {
  if (requirement.moduleId.empty()) {
    return false;
  }
  const bool isOfCarried = !requirement.carriedFor.empty();
  return (isOfCarried &&
          Satisfies(requirement, module.moduleId, module.language, module.version)) ||
         std::any_of(module.carried.begin(), module.carried.end(),
                     [&](const ModuleSignature& carried) {
                       return Satisfies(requirement, carried.moduleId, carried.language.value_or(0),
                                        carried.version);
                     });
}

MergePlan PlanMerge(const MergeSet& set, const std::vector<size_t>& wanted) {
  Planner planner(set);
  for (const size_t module : wanted) {
    planner.Add(module);
  }
  return planner.Take();
}

std::vector<ModuleUser> FindUsers(const MergeSet& set, size_t module) {
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
  isFound[module] = true;
  std::vector<ModuleUser> found;
  const auto addUsersOf = [&](size_t needed) {
    for (const size_t user : neededBy[needed]) {
      if (!isFound[user]) {
        isFound[user] = true;
        found.push_back({user, needed});
      }
    }
  };
  addUsersOf(module);
  for (size_t next = 0; next < found.size(); ++next) {
    addUsersOf(found[next].module);
  }
  std::sort(found.begin(), found.end(),
            [](const ModuleUser& a, const ModuleUser& b) { return a.module < b.module; });
  return found;
}

}  // namespace qm::merge
