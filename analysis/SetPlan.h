#pragma once

#include <memory>
#include <vector>

#include "analysis/SetObject.h"
#include "merge/MergePlan.h"
#include "merge/PlanConflicts.h"

namespace qm::analysis {

/// A module of a plan.
class SetPlannedModule : public SetObject<IPlannedModule> {
 public:
  void Init(SharedSet set, const merge::PlannedModule& planned);

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_NeededBy)(ISetModule** value) override;
  STDMETHOD(get_Reason)(BSTR* value) override;
  STDMETHOD(get_Alternatives)(ISetModules** value) override;
  STDMETHOD(get_Needs)(ISetModules** value) override;

 private:
  SharedSet m_set;
  merge::PlannedModule m_planned;
};

/// A requirement that no module satisfies.
class SetMissingModule : public SetObject<IMissingModule> {
 public:
  void Init(SharedSet set, const merge::MissingModule& missing);

  STDMETHOD(get_NeededBy)(ISetModule** value) override;
  STDMETHOD(get_Requirement)(ISetRequirement** value) override;
  STDMETHOD(get_Reason)(BSTR* value) override;

 private:
  SharedSet m_set;
  merge::MissingModule m_missing;
};

/// A change that resolves a conflict.
class SetPlanFix : public SetObject<IPlanFix> {
 public:
  void Init(SharedSet set, const merge::PlanFix& fix);

  STDMETHOD(get_Text)(BSTR* value) override;
  STDMETHOD(get_Drop)(ISetModules** value) override;
  STDMETHOD(get_Modules)(ISetModules** value) override;

 private:
  SharedSet m_set;
  merge::PlanFix m_fix;
};

/// A conflict of a plan.
class SetPlanConflict : public SetObject<IPlanConflict> {
 public:
  void Init(SharedSet set, const merge::PlanConflict& conflict);

  STDMETHOD(get_Text)(BSTR* value) override;
  STDMETHOD(get_Modules)(ISetModules** value) override;
  STDMETHOD(get_Chains)(IModuleChains** value) override;
  STDMETHOD(get_Fixes)(IPlanFixes** value) override;
  STDMETHOD(get_IsMinimal)(VARIANT_BOOL* value) override;

 private:
  SharedSet m_set;
  std::shared_ptr<const merge::PlanConflict> m_conflict;
};

/// The plan of a merge.
class SetPlan : public SetObject<IMergePlan> {
 public:
  void Init(SharedSet set, std::vector<size_t> wanted);

  STDMETHOD(get_Modules)(IPlannedModules** value) override;
  STDMETHOD(get_Missing)(IMissingModules** value) override;
  STDMETHOD(get_Cycles)(ISetCycles** value) override;
  STDMETHOD(get_IsProven)(VARIANT_BOOL* value) override;
  STDMETHOD(get_Conflicts)(IPlanConflicts** value) override;

 private:
  SharedSet m_set;
  std::vector<size_t> m_wanted;
  std::shared_ptr<const merge::MergePlan> m_plan;
};

/// Plans the merge of the modules at `wanted`. Raises as SetData::SpellFolder does.
merge::MergePlan PlanModules(const SetData& set, const std::vector<size_t>& wanted);

}  // namespace qm::analysis
