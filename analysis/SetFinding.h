#pragma once

#include "analysis/SetObject.h"
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

}  // namespace qm::analysis
