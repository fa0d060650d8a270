#pragma once

#include "catalog/CatalogBase.h"

namespace qm::catalog {

/// The catalog for script-based projects (coclass MMCatalogPro). These use no merge modules, so
/// nearly all members succeed without doing anything. They leave most out parameters alone.
class CMMCatalogPro : public CatalogBase<&CLSID_MMCatalogPro> {
 public:
  HRESULT Initialize() noexcept override { return S_OK; }

  // IMMCatalog
  STDMETHOD(Reserved1)(long, long, long* result) override { return ReturnZero(result); }
  STDMETHOD(Reserved2)(long, long* result) override { return ReturnZero(result); }
  STDMETHOD(Refresh)(long* result) override { return ReturnZero(result); }
  STDMETHOD(get_Sources)(IMMSources**) override { return S_OK; }
  STDMETHOD(get_MergeModules)(IMergeModules**) override { return S_OK; }
  STDMETHOD(FindModules)(BSTR*, BSTR, long, IMergeModules**, long*) override { return S_OK; }
  STDMETHOD(Reserved7)(long*) override { return S_OK; }
  STDMETHOD(Reserved8)(long, long*) override { return S_OK; }
  STDMETHOD(Reserved9)(long) override { return S_OK; }

  // IMMCatalogVelmora
  STDMETHOD(CatalogQuery)(VARIANT, VARIANT*, VARIANT*) override { return S_OK; }
  STDMETHOD(FindModule)(BSTR, BSTR, long, IMergeModules**, long*) override { return S_OK; }
  STDMETHOD(GetModuleForFile)(BSTR, BSTR*) override { return S_OK; }
  STDMETHOD(GetModuleDisplayName)(BSTR, BSTR*) override { return S_OK; }

  // IMMCatalogCaskel
  STDMETHOD(SupportsProject)(IUnknown* project, VARIANT_BOOL* supported) override;
};

}  // namespace qm::catalog
