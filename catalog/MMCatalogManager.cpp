#include "catalog/MMCatalogManager.h"

#include <utility>

#include "idl/host.h"

namespace qm::catalog {

namespace {

bool IsScriptKind(long projectKind) noexcept {
  return projectKind == ProjectKind_Script || projectKind == ProjectKind_ScriptVariant;
}

template <class Catalog>
HRESULT GetOrCreateCatalog(common::ComPtr<com::ComObject<Catalog>>& cached, IUnknown** catalog) {
  if (!cached) {
    common::ComPtr<com::ComObject<Catalog>> made;
    const HRESULT hr = com::ComObject<Catalog>::TryCreate(made);
    if (FAILED(hr)) {
      return hr;  // the catalog has reported it under its own class
    }
    // A call to a component in another process may have dispatched a second request meanwhile.
    if (!cached) {
      cached = std::move(made);
    }
  }
  return cached.QueryInterface(catalog);
}

}  // namespace

STDMETHODIMP CMMCatalogManager::GetCatalog(long projectKind, IUnknown** catalog) {
  return MethodBoundary([&]() -> HRESULT {
    if (!catalog) {
      return E_INVALIDARG;
    }
    *catalog = nullptr;
    return IsScriptKind(projectKind) ? GetOrCreateCatalog(m_pScriptCatalog, catalog)
                                     : GetOrCreateCatalog(m_pCatalog, catalog);
  });
}

}  // namespace qm::catalog
