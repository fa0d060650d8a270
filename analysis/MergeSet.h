#pragma once

#include <vector>

#include "analysis/SetObject.h"

namespace qm::analysis {

/// The coclass MergeSet.
class CMergeSet : public SetObject<IMergeSet> {
 public:
  STDMETHOD(Load)(IDispatch* source) override;
  STDMETHOD(get_Modules)(ISetModules** modules) override;
  STDMETHOD(Check)(VARIANT modules, ISetFindings** findings) override;
  STDMETHOD(Plan)(VARIANT modules, IMergePlan** plan) override;
  STDMETHOD(UsersOf)(BSTR moduleKey, IModuleUsers** users) override;
  STDMETHOD(ExclusionsOf)(BSTR moduleKey, ISetExclusions** exclusions) override;
  STDMETHOD(FindFiles)(BSTR pattern, ISetFiles** files) override;
  STDMETHOD(FindDeliverers)(BSTR fileName, IFileDeliverers** deliverers) override;
  STDMETHOD(get_GalleryDescriptions)(IGalleryDescriptions** descriptions) override;
  STDMETHOD(FindModules)(BSTR moduleKey, ISetModules** modules) override;
  STDMETHOD(get_Failures)(ISetFailures** failures) override;
  STDMETHOD(ReportProgressTo)(VARIANT function) override;

 private:
  /// Returns what was loaded. Raises E_UNEXPECTED if nothing was.
  const SharedSet& RequireSet() const;

  SharedSet m_set;
  common::ComPtr<IDispatch> m_onProgress;
};

}  // namespace qm::analysis
