#pragma once

#include <vector>

#include "analysis/SetObject.h"

namespace qm::analysis {

/// A module of a set.
class SetModule : public SetObject<ISetModule> {
 public:
  void Init(SharedSet set, size_t position) noexcept;

  STDMETHOD(get_Key)(BSTR* value) override;
  STDMETHOD(get_ModuleID)(BSTR* value) override;
  STDMETHOD(get_Language)(long* value) override;
  STDMETHOD(get_Version)(BSTR* value) override;
  STDMETHOD(get_DisplayName)(BSTR* value) override;
  STDMETHOD(get_PackageCode)(BSTR* value) override;
  STDMETHOD(get_Path)(BSTR* value) override;
  STDMETHOD(get_Folder)(BSTR* value) override;
  STDMETHOD(get_Subject)(BSTR* value) override;
  STDMETHOD(get_Author)(BSTR* value) override;
  STDMETHOD(get_Comments)(BSTR* value) override;
  STDMETHOD(get_Platform)(BSTR* value) override;
  STDMETHOD(get_MinimumInstaller)(long* value) override;
  STDMETHOD(get_IsFromGallery)(VARIANT_BOOL* value) override;
  STDMETHOD(get_IsPresent)(VARIANT_BOOL* value) override;
  STDMETHOD(get_NeedsDownload)(VARIANT_BOOL* value) override;
  STDMETHOD(get_Failure)(BSTR* value) override;
  STDMETHOD(get_Change)(BSTR* value) override;
  STDMETHOD(get_MergeModule)(IDispatch** value) override;
  STDMETHOD(get_Files)(ISetFiles** value) override;
  STDMETHOD(get_Components)(ISetComponents** value) override;
  STDMETHOD(get_CustomActions)(ISetCustomActions** value) override;
  STDMETHOD(get_Requirements)(ISetRequirements** value) override;
  STDMETHOD(get_Exclusions)(ISetExclusions** value) override;
  STDMETHOD(get_Tables)(ISetTables** value) override;
  STDMETHOD(get_Number)(long* value) override;
  STDMETHOD(get_Users)(IModuleUsers** value) override;

 private:
  const merge::Module& Data() const noexcept { return m_set->ModuleAt(m_position); }

  SharedSet m_set;
  size_t m_position = 0;
};

/// Makes the object for a module of the set; null without a position.
ISetModule* MakeModule(const SharedSet& set, std::optional<size_t> position);

/// Makes a collection of modules of the set.
ISetModules* MakeModules(const SharedSet& set, std::vector<size_t> positions);

}  // namespace qm::analysis
