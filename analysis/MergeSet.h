#pragma once

#include <vector>

#include "analysis/SetObject.h"

namespace qm::analysis {

/// The coclass MergeSet.
class CMergeSet : public SetObject<IMergeSet> {
 public:
  STDMETHOD(Load)(IDispatch* modules) override;
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

 private:
  /// Returns what was loaded. Raises E_UNEXPECTED if nothing was.
  const SharedSet& RequireSet() const;

  /// Returns the positions of the modules that a key means. Raises E_INVALIDARG if no module has
  /// it.
  std::vector<size_t> RequireModules(std::wstring_view key) const;

  /// Returns the same for a key or a list of keys, each position once.
  std::vector<size_t> RequireModules(const VARIANT& keys) const;

  SharedSet m_set;
};

}  // namespace qm::analysis
