#pragma once

#include "catalog/MMCatalog.h"
#include "catalog/MMCatalogPro.h"

namespace qm::catalog {

/// Returns the catalog for a kind of project (coclass MMCatalogManager). Each catalog is created at
/// the first request and lives at least as long as the manager.
class CMMCatalogManager : public com::DispatchImpl<IMMCatalogManagerVelmora>,
                          public com::SupportErrorInfo<IMMCatalogManagerVelmora>,
                          public com::CErrorHandler<&CLSID_MMCatalogManager>,
                          public com::ComObjectRoot {
 public:
  using InterfaceMap =
      com::InterfaceMap<com::Via<IMMCatalogManagerVelmora, IMMCatalogManagerVelmora, IDispatch>,
                        com::Via<ISupportErrorInfo, ISupportErrorInfo>>;

  STDMETHOD(GetCatalog)(long projectKind, IUnknown** catalog) override;

  virtual ~CMMCatalogManager() = default;

 private:
  common::ComPtr<com::ComObject<CMMCatalog>> m_pCatalog;
  common::ComPtr<com::ComObject<CMMCatalogPro>> m_pScriptCatalog;
};

}  // namespace qm::catalog
