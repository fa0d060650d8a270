#pragma once

#include <vector>

#include "analysis/SetObject.h"
#include "merge/FileSearch.h"
#include "merge/Findings.h"
#include "merge/MergePlan.h"
#include "merge/ModuleUsers.h"

namespace qm::analysis {

/// A finding of a check.
class SetFinding : public SetObject<ISetFinding> {
 public:
  void Init(SharedSet set, const merge::Finding& finding);

  STDMETHOD(get_Code)(BSTR* value) override;
  STDMETHOD(get_Text)(BSTR* value) override;
  STDMETHOD(get_ModuleKeys)(VARIANT* value) override;
  STDMETHOD(get_Modules)(ISetModules** value) override;
  STDMETHOD(get_Severity)(BSTR* value) override;
  STDMETHOD(get_MergeErrorType)(long* value) override;
  STDMETHOD(get_Required)(ISetRequirement** value) override;
  STDMETHOD(get_File)(BSTR* value) override;
  STDMETHOD(get_Folder)(BSTR* value) override;
  STDMETHOD(get_Table)(BSTR* value) override;
  STDMETHOD(get_RowKey)(BSTR* value) override;
  STDMETHOD(get_Versions)(VARIANT* value) override;
  STDMETHOD(get_Values)(ISetFindingValues** value) override;

 private:
  SharedSet m_set;
  merge::Finding m_finding;
};

/// A value that a finding is about.
class SetFindingValue : public SetObject<ISetFindingValue> {
 public:
  void Init(SharedSet set, const merge::FindingValue& value);

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Column)(BSTR* value) override;
  STDMETHOD(get_Value)(BSTR* value) override;

 private:
  SharedSet m_set;
  merge::FindingValue m_value;
};

/// A module of a plan.
class PlannedModule : public SetObject<IPlannedModule> {
 public:
  void Init(SharedSet set, const merge::PlannedModule& planned);

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_NeededBy)(ISetModule** value) override;
  STDMETHOD(get_Reason)(BSTR* value) override;

 private:
  SharedSet m_set;
  merge::PlannedModule m_planned;
};

/// A requirement that no module satisfies.
class MissingModule : public SetObject<IMissingModule> {
 public:
  void Init(SharedSet set, const merge::MissingModule& missing);

  STDMETHOD(get_NeededBy)(ISetModule** value) override;
  STDMETHOD(get_Requirement)(ISetRequirement** value) override;
  STDMETHOD(get_Reason)(BSTR* value) override;

 private:
  SharedSet m_set;
  merge::MissingModule m_missing;
};

/// The plan of a merge.
class MergePlan : public SetObject<IMergePlan> {
 public:
  void Init(SharedSet set, merge::MergePlan plan);

  STDMETHOD(get_Modules)(IPlannedModules** value) override;
  STDMETHOD(get_Missing)(IMissingModules** value) override;
  STDMETHOD(get_Cycles)(ISetCycles** value) override;

 private:
  SharedSet m_set;
  std::shared_ptr<const merge::MergePlan> m_plan;
};

/// A module that needs another one.
class ModuleUser : public SetObject<IModuleUser> {
 public:
  void Init(SharedSet set, const merge::ModuleUser& user) noexcept;

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Through)(ISetModule** value) override;

 private:
  SharedSet m_set;
  merge::ModuleUser m_user{};
};

/// A module that delivers a file.
class FileDeliverer : public SetObject<IFileDeliverer> {
 public:
  void Init(SharedSet set, const merge::Deliverer& deliverer);

  STDMETHOD(get_FileName)(BSTR* value) override;
  STDMETHOD(get_ModuleKey)(BSTR* value) override;
  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Copies)(long* value) override;
  STDMETHOD(get_Files)(ISetFiles** value) override;
  STDMETHOD(get_IndexFile)(BSTR* value) override;
  STDMETHOD(get_Problem)(BSTR* value) override;

 private:
  SharedSet m_set;
  merge::Deliverer m_deliverer;
};

/// A description file of the gallery.
class GalleryDescriptionItem : public SetObject<IGalleryDescription> {
 public:
  void Init(SharedSet set, const GalleryDescription& description) noexcept;

  STDMETHOD(get_Path)(BSTR* value) override;
  STDMETHOD(get_PackageCode)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_Failure)(BSTR* value) override;
  STDMETHOD(get_FailureCode)(long* value) override;

 private:
  SharedSet m_set;
  const GalleryDescription* m_description = nullptr;
};

/// A file that could not be read.
class SetFailure : public SetObject<ISetFailure> {
 public:
  void Init(SharedSet set, const LoadFailure& failure) noexcept;

  STDMETHOD(get_Path)(BSTR* value) override;
  STDMETHOD(get_Text)(BSTR* value) override;
  STDMETHOD(get_Code)(long* value) override;
  STDMETHOD(get_Module)(ISetModule** value) override;

 private:
  SharedSet m_set;
  const LoadFailure* m_failure = nullptr;
};

/// Makes a collection of modules that need another one.
IModuleUsers* MakeUsers(const SharedSet& set, std::vector<merge::ModuleUser> users);

}  // namespace qm::analysis
