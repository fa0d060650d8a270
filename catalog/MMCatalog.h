#pragma once

#include "catalog/CatalogBase.h"
#include "catalog/CatalogModules.h"
#include "catalog/CatalogState.h"
#include "catalog/ModuleQuery.h"
#include "idl/openfiles.h"
#include "idl/siblings.h"

namespace qm::catalog {

/// The catalog of all merge modules of the search folders and the gallery (coclass MMCatalog).
///
/// The list of modules is built when it is first needed. A refresh rebuilds it only if the search
/// folders or their contents have changed. A list that was handed out never changes. After a
/// failure the catalog keeps its previous list and tries again at the next call.
class CMMCatalog : public CatalogBase<&CLSID_MMCatalog>, public IOpenFiles {
 public:
  using InterfaceMap = InterfaceMapWith<com::Via<IOpenFiles, IOpenFiles>>;

  /// Asks the application services for the search paths, and loads the index tables of the process
  /// if they are not loaded yet.
  HRESULT Initialize() noexcept override;

  // IMMCatalog
  STDMETHOD(Reserved1)(long first, long second, long* result) override;
  STDMETHOD(Reserved2)(long first, long* result) override;
  STDMETHOD(Refresh)(long* result) override;
  STDMETHOD(get_Sources)(IMMSources** sources) override;
  STDMETHOD(get_MergeModules)(IMergeModules** modules) override;
  STDMETHOD(FindModules)
  (BSTR* key, BSTR version, long flags, IMergeModules** modules, long* count) override;
  STDMETHOD(Reserved7)(long* result) override;
  STDMETHOD(Reserved8)(long first, long* result) override;
  STDMETHOD(Reserved9)(long first) override;

  // IMMCatalogVelmora
  STDMETHOD(CatalogQuery)(VARIANT query, VARIANT* count, VARIANT* modules) override;
  STDMETHOD(FindModule)
  (BSTR key, BSTR version, long flags, IMergeModules** modules, long* count) override;
  STDMETHOD(GetModuleForFile)(BSTR fileName, BSTR* key) override;
  STDMETHOD(GetModuleDisplayName)(BSTR key, BSTR* name) override;

  // IMMCatalogCaskel
  STDMETHOD(SupportsProject)(IUnknown* project, VARIANT_BOOL* supported) override;

  // IOpenFiles
  STDMETHOD(ListModules)(IOpenFileReader* reader, IMergeModules** modules) override;

 private:
  /// Enters the ApartmentGate and brings the list of modules up to date. Does nothing before
  /// Initialize has succeeded, or if this apartment is already refreshing a catalog. `reader` may
  /// be null.
  void RefreshModules(IOpenFileReader* reader = nullptr);
  std::vector<SearchFolder> GetSearchFolders();

  /// Returns the current list, which the first call builds. Raises E_PENDING if the list is still
  /// being built.
  const CatalogModules& RequireModules();

  /// Implements FindModule and FindModules for the query that `makeQuery` returns.
  template <class MakeQuery>
  HRESULT Find(MakeQuery makeQuery, IMergeModules** modules, long* count) noexcept;

  bool m_bInitialized = false;
  bool m_bDirty = true;                    ///< until a build of the list has succeeded
  unsigned long m_builtAtChangeCount = 0;  ///< the count of changes at which the list was built
  std::unique_ptr<const CatalogModules> m_pModules;
  common::WideString m_strSearchPath;
  common::WideString m_strUserSearchPath;
  common::ComPtr<IApplicationServices> m_pServices;
  common::ComPtr<IRepositoryMgr> m_pRepositoryMgr;  ///< kept because it caches the repository list
};

}  // namespace qm::catalog
