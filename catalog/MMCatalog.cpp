#include "catalog/MMCatalog.h"

#include "catalog/FileLookup.h"
#include "catalog/MMSource.h"
#include "catalog/QueryArgument.h"
#include "catalog/Refresh.h"
#include "catalog/Repositories.h"
#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "com/frame/ApartmentPtr.h"
#include "common/Bstr.h"
#include "common/ScopeGuard.h"
#include "gallery/IndexTables.h"
#include "gallery/SiblingObjects.h"
#include "idl/host.h"

namespace qm::catalog {

HRESULT CMMCatalog::Initialize() noexcept {
  return MethodBoundary([&] {
    m_pServices = gallery::CreateApplicationServices();
    m_strSearchPath =
        gallery::GetServiceText(*m_pServices, &IApplicationServices::get_ModuleSearchPath);
    m_strUserSearchPath =
        gallery::GetServiceText(*m_pServices, &IApplicationServices::get_UserModuleSearchPath);
    m_pModules = nullptr;
    m_bDirty = true;
    gallery::IndexTables::Instance().LoadOnce(*m_pServices);
    m_bInitialized = true;
    return S_OK;
  });
}

void CMMCatalog::RefreshModules(IOpenFileReader* reader) {
  const com::ScopedGateEntry pass;
  CatalogState& state = CatalogState::Instance();
  if (!m_bInitialized || state.isRefreshing) {
    return;
  }
  com::ReleaseQueuedReferences();
  state.isRefreshing = true;
  const common::ScopeGuard mark([&]() noexcept { state.isRefreshing = false; });
  UpdateSources(state, GetSearchFolders());
  RecheckSources(state);
  if (!m_bDirty && m_builtAtChangeCount == state.changeCount) {
    return;
  }
  m_bDirty = true;
  // Also after a failure: otherwise a build that keeps failing would add records each time.
  const common::ScopeGuard pruning([&]() noexcept { state.PruneExpiredRecords(); });
  auto modules = std::make_unique<const CatalogModules>(BuildModuleList(
      state, gallery::GetServiceText(*m_pServices, &IApplicationServices::get_GalleryRoot),
      reader));
  m_pModules = std::move(modules);
  m_builtAtChangeCount = state.changeCount;
  m_bDirty = false;
}

std::vector<SearchFolder> CMMCatalog::GetSearchFolders() {
  if (!m_pRepositoryMgr) {
    m_pRepositoryMgr = CreateRepositoryManager(
        gallery::GetServiceText(*m_pServices, &IApplicationServices::get_DataFolder));
  }
  std::vector<RepositoryInfo> repositories;
  if (m_pRepositoryMgr) {
    repositories = ListRepositories(*m_pRepositoryMgr);
  }
  return ListSearchFolders(JoinSearchPaths(m_strSearchPath, m_strUserSearchPath), repositories);
}

const CatalogModules& CMMCatalog::RequireModules() {
  if (!m_pModules) {
    RefreshModules();
  }
  if (!m_pModules) {
    com::Raise(com_exception(E_PENDING, L"The catalog is being built."));
  }
  return *m_pModules;
}

STDMETHODIMP CMMCatalog::Reserved1(long, long, long* result) { return ReturnZero(result); }

STDMETHODIMP CMMCatalog::Reserved2(long, long* result) { return ReturnZero(result); }

STDMETHODIMP CMMCatalog::Refresh(long* result) {
  *result = 0;
  return MethodBoundary([&] {
    RefreshModules();
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::get_Sources(IMMSources** sources) {
  return FillOut(sources, [&] {
    RequireModules();
    const auto collection = com::ComObject<module::CMMSources>::Create();
    const com::ScopedGateEntry pass;
    int position = 0;
    for (const auto& [folder, source] : CatalogState::Instance().sources) {
      const auto item = com::ComObject<CMMSource>::Create();
      item->Init(*source);
      collection->Add(common::WideString::Format(L"%d", ++position), item.Get());
    }
    com::RaiseIfFailed(collection.QueryInterface(sources));
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::get_MergeModules(IMergeModules** modules) {
  return MethodBoundary([&]() -> HRESULT {
    if (!modules) {
      return E_POINTER;
    }
    RefreshModules();
    IMergeModules* const current = RequireModules().NewReference();
    // The caller may pass in the list of an earlier call, which is released.
    if (IMergeModules* const held = std::exchange(*modules, current)) {
      held->Release();
    }
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::ListModules(IOpenFileReader* reader, IMergeModules** modules) {
  return FillOut(modules, [&]() -> HRESULT {
    if (!reader) {
      return E_POINTER;
    }
    RefreshModules(reader);
    *modules = RequireModules().NewReference();
    return S_OK;
  });
}

template <class MakeQuery>
HRESULT CMMCatalog::Find(MakeQuery makeQuery, IMergeModules** modules, long* count) noexcept {
  return MethodBoundary([&]() -> HRESULT {
    if (!modules || !count) {
      return E_POINTER;
    }
    *modules = nullptr;
    *count = 0;
    const ModuleQuery query = makeQuery();
    const com::ScopedGateEntry pass;
    const CatalogModules matches = FindMatchingModules(RequireModules(), query);
    *count = static_cast<long>(matches.Records().size());
    *modules = matches.NewReference();
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::FindModules(BSTR* key, BSTR version, long, IMergeModules** modules,
                                     long* count) {
  return Find(
      [&] {
        com::RaiseIfFailed(key ? S_OK : E_POINTER);
        ModuleQuery query = ParseModuleKey(common::ViewOf(*key), common::ViewOf(version));
        query.language.clear();
        return query;
      },
      modules, count);
}

STDMETHODIMP CMMCatalog::Reserved7(long* result) { return ReturnZero(result); }

STDMETHODIMP CMMCatalog::Reserved8(long, long* result) { return ReturnZero(result); }

STDMETHODIMP CMMCatalog::Reserved9(long) { return S_OK; }

STDMETHODIMP CMMCatalog::CatalogQuery(VARIANT query, VARIANT* count, VARIANT* modules) {
  return MethodBoundary([&]() -> HRESULT {
    if (!modules) {
      return E_POINTER;
    }
    modules->vt = VT_EMPTY;
    // Parsed before the list is used, because parsing may run script code, which may refresh the
    // catalog.
    const ModuleQuery wanted = ParseQueryArgument(query);
    const com::ScopedGateEntry pass;
    const CatalogModules matches = FindMatchingModules(RequireModules(), wanted);
    StoreCount(static_cast<long>(matches.Records().size()), count);
    modules->pdispVal = matches.NewReference();
    modules->vt = VT_DISPATCH;
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::FindModule(BSTR key, BSTR version, long, IMergeModules** modules,
                                    long* count) {
  return Find([&] { return ParseModuleKey(common::ViewOf(key), common::ViewOf(version)); }, modules,
              count);
}

STDMETHODIMP CMMCatalog::GetModuleForFile(BSTR fileName, BSTR* key) {
  return AnswerText(key, [&] { return FindModuleForFile(common::ViewOf(fileName)); });
}

STDMETHODIMP CMMCatalog::GetModuleDisplayName(BSTR key, BSTR* name) {
  return AnswerText(name, [&] {
    common::WideString text = common::ViewOf(key);
    gallery::IndexTables::Instance().LookupModuleName(text, text);
    return text;
  });
}

STDMETHODIMP CMMCatalog::SupportsProject(IUnknown* project, VARIANT_BOOL* supported) {
  return AnswerSupportsProject(project, supported, [](long kind) {
    return kind == ProjectKind_Installer || kind == ProjectKind_InstallerVariant;
  });
}

}  // namespace qm::catalog
