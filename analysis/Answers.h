#pragma once

#include <vector>

#include "analysis/SetObject.h"
#include "merge/FileSearch.h"
#include "merge/Findings.h"

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

}  // namespace qm::analysis
