#include "catalog/MMCatalogManager.h"

namespace {

bool IsScriptKind(long projectKind) noexcept { return projectKind == 9 || projectKind == 10; }

template <class Catalog>
HRESULT Give(CComPtr<CComObject<Catalog>>& cached, IUnknown** catalog) {
  if (!cached) {
    cached = CComObject<Catalog>::Create();
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
    return IsScriptKind(projectKind) ? Give(m_pScriptCatalog, catalog) : Give(m_pCatalog, catalog);
  });
}
