#pragma once

#include "catalog/MMCatalog.h"
#include "catalog/MMCatalogPro.h"

/// Returns the catalog for a kind of project (coclass MMCatalogManager). Each catalog is created at
/// the first request and lives at least as long as the manager.
class CMMCatalogManager : public IDispatchImpl<IMMCatalogManagerVelmora>,
                          public CSupportErrorInfo<IMMCatalogManagerVelmora>,
                          public CErrorHandler<&CLSID_MMCatalogManager>,
                          public CComObjectRoot {
 public:
  using InterfaceMap =
      CInterfaceMap<Via<IMMCatalogManagerVelmora, IMMCatalogManagerVelmora, IDispatch>,
                    Via<ISupportErrorInfo, ISupportErrorInfo>>;

  STDMETHOD(GetCatalog)(long projectKind, IUnknown** catalog) override;

  virtual ~CMMCatalogManager() = default;

 private:
  CComPtr<CComObject<CMMCatalog>> m_pCatalog;
  CComPtr<CComObject<CMMCatalogPro>> m_pScriptCatalog;
};
