#pragma once

#include "analysis/SetObject.h"

namespace qm::analysis {

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

}  // namespace qm::analysis
