#include "analysis/SetPlan.h"

#include "analysis/CheckOptions.h"
#include "analysis/ModuleItem.h"
#include "analysis/ModuleRows.h"
#include "analysis/SetCollection.h"
#include "merge/PlanObjections.h"

namespace qm::analysis {

namespace {

merge::PlanOptions MakePlanOptions(const SetData& set) {
  merge::PlanOptions options;
  options.findObjections = [&](const std::vector<size_t>& plan) {
    return merge::FindCheckObjections(set.Index(), plan, MakeCheckOptions(set));
  };
  return options;
}

}  // namespace

merge::MergePlan PlanModules(const SetData& set, const std::vector<size_t>& wanted) {
  return merge::PlanMerge(set.Index(), wanted, MakePlanOptions(set));
}

void SetPlannedModule::Init(SharedSet set, const merge::PlannedModule& planned) {
  m_set = std::move(set);
  m_planned = planned;
}

STDMETHODIMP SetPlannedModule::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_planned.module); });
}
STDMETHODIMP SetPlannedModule::get_NeededBy(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_planned.neededBy); });
}
STDMETHODIMP SetPlannedModule::get_Reason(BSTR* value) {
  return AnswerUtf8(value, m_planned.reason);
}
STDMETHODIMP SetPlannedModule::get_Alternatives(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_planned.alternatives); });
}
STDMETHODIMP SetPlannedModule::get_Needs(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_planned.needs); });
}

void SetMissingModule::Init(SharedSet set, const merge::MissingModule& missing) {
  m_set = std::move(set);
  m_missing = missing;
}

STDMETHODIMP SetMissingModule::get_NeededBy(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, m_missing.neededBy); });
}
STDMETHODIMP SetMissingModule::get_Requirement(ISetRequirement** value) {
  return Answer(value, [&] {
    return com::MakeObject<SetRequirement>(m_set, m_missing.neededBy, m_missing.requirement);
  });
}
STDMETHODIMP SetMissingModule::get_Reason(BSTR* value) {
  return AnswerUtf8(value, m_missing.reason);
}

void SetPlanFix::Init(SharedSet set, const merge::PlanFix& fix) {
  m_set = std::move(set);
  m_fix = fix;
}

STDMETHODIMP SetPlanFix::get_Text(BSTR* value) { return AnswerUtf8(value, m_fix.text); }
STDMETHODIMP SetPlanFix::get_Drop(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_fix.drop); });
}
STDMETHODIMP SetPlanFix::get_Modules(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_fix.modules); });
}

void SetPlanConflict::Init(SharedSet set, const merge::PlanConflict& conflict) {
  m_set = std::move(set);
  m_conflict = std::make_shared<const merge::PlanConflict>(conflict);
}

STDMETHODIMP SetPlanConflict::get_Text(BSTR* value) { return AnswerUtf8(value, m_conflict->text); }
STDMETHODIMP SetPlanConflict::get_Modules(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, m_conflict->modules); });
}
STDMETHODIMP SetPlanConflict::get_Chains(IModuleChains** value) {
  return Answer(value, [&] {
    return MakeCollection<IModuleChains, ISetModules>(
        m_conflict->chains.size(),
        [set = m_set, conflict = m_conflict](size_t at) {
          return MakeModules(set, conflict->chains[at]);
        },
        nullptr);
  });
}
STDMETHODIMP SetPlanConflict::get_Fixes(IPlanFixes** value) {
  return Answer(value, [&] {
    return MakeCollection<IPlanFixes, IPlanFix>(
        m_conflict->fixes.size(),
        [set = m_set, conflict = m_conflict](size_t at) {
          return com::MakeObject<SetPlanFix>(set, conflict->fixes[at]);
        },
        nullptr);
  });
}
STDMETHODIMP SetPlanConflict::get_IsMinimal(VARIANT_BOOL* value) {
  return AnswerFlag(value, m_conflict->isMinimal);
}

void SetPlan::Init(SharedSet set, std::vector<size_t> wanted) {
  m_set = std::move(set);
  m_wanted = std::move(wanted);
  m_plan = std::make_shared<const merge::MergePlan>(PlanModules(*m_set, m_wanted));
}

STDMETHODIMP SetPlan::get_Modules(IPlannedModules** value) {
  return Answer(value, [&] {
    return MakeCollection<IPlannedModules, IPlannedModule>(
        m_plan->modules.size(),
        [set = m_set, plan = m_plan](size_t at) {
          return com::MakeObject<SetPlannedModule>(set, plan->modules[at]);
        },
        [set = m_set, plan = m_plan](size_t at) {
          return set->ModuleAt(plan->modules[at].module).key;
        });
  });
}

STDMETHODIMP SetPlan::get_Missing(IMissingModules** value) {
  return Answer(value, [&] {
    return MakeCollection<IMissingModules, IMissingModule>(
        m_plan->missing.size(),
        [set = m_set, plan = m_plan](size_t at) {
          return com::MakeObject<SetMissingModule>(set, plan->missing[at]);
        },
        [plan = m_plan](size_t at) { return MakeRequiredKey(plan->missing[at].requirement); });
  });
}

STDMETHODIMP SetPlan::get_Cycles(ISetCycles** value) {
  return Answer(value, [&] {
    return MakeCollection<ISetCycles, ISetModules>(
        m_plan->cycles.size(),
        [set = m_set, plan = m_plan](size_t at) { return MakeModules(set, plan->cycles[at]); },
        nullptr);
  });
}

STDMETHODIMP SetPlan::get_IsProven(VARIANT_BOOL* value) {
  return AnswerFlag(value, m_plan->isProven);
}

STDMETHODIMP SetPlan::get_Conflicts(IPlanConflicts** value) {
  return Answer(value, [&] {
    const auto conflicts = std::make_shared<const std::vector<merge::PlanConflict>>(
        merge::FindPlanConflicts(m_set->Index(), m_wanted, MakePlanOptions(*m_set)));
    return MakeCollection<IPlanConflicts, IPlanConflict>(
        conflicts->size(),
        [set = m_set, conflicts](size_t at) {
          return com::MakeObject<SetPlanConflict>(set, (*conflicts)[at]);
        },
        nullptr);
  });
}

}  // namespace qm::analysis
