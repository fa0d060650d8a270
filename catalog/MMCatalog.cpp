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

namespace {

HRESULT Zero(long* result) noexcept {
  *result = 0;
  return S_OK;
}

}  // namespace

HRESULT CMMCatalog::Initialize() noexcept {
  return MethodBoundary([&] {
    m_pServices = CreateApplicationServices();
    m_strSearchPath = AskServices(*m_pServices, &IApplicationServices::get_ModuleSearchPath);
    m_strUserSearchPath =
        AskServices(*m_pServices, &IApplicationServices::get_UserModuleSearchPath);
    m_pModules = nullptr;
    m_bDirty = true;
    CIniIndexes::Instance().LoadOnce(*m_pServices);
    m_bInitialized = true;
    return S_OK;
  });
}

void CMMCatalog::RunRefresh() {
  const CGatePass pass;
  CCatalogState& state = CCatalogState::Instance();
  if (!m_bInitialized || state.isRefreshing) {
    return;
  }
  ReleaseReturnedReferences();
  state.isRefreshing = true;
  const ScopeGuard mark([&]() noexcept { state.isRefreshing = false; });
  UpdateSources(state, CurrentSearchFolders());
  RecheckSources(state);
  if (!m_bDirty && m_nChanges == state.changes) {
    return;
  }
  m_bDirty = true;
  // Also after a failure: otherwise a build that keeps failing would add records each time.
  const ScopeGuard pruning([&]() noexcept { state.ForgetGoneRecords(); });
  auto modules = std::make_unique<const CModuleList>(
      BuildModuleList(state, AskServices(*m_pServices, &IApplicationServices::get_GalleryRoot)));
  m_pModules = std::move(modules);
  m_nChanges = state.changes;
  m_bDirty = false;
}

std::vector<SearchFolder> CMMCatalog::CurrentSearchFolders() {
  if (!m_pRepositoryMgr) {
    m_pRepositoryMgr =
        OpenRepositoryList(AskServices(*m_pServices, &IApplicationServices::get_DataFolder));
  }
  std::vector<Repository> repositories;
  if (m_pRepositoryMgr) {
    repositories = ReadRepositories(*m_pRepositoryMgr);
  }
  return ListSearchFolders(JoinSearchPaths(m_strSearchPath, m_strUserSearchPath), repositories);
}

const CModuleList& CMMCatalog::RequireModules() {
  if (!m_pModules) {
    RunRefresh();
  }
  if (!m_pModules) {
    Raise(com_exception(E_PENDING, L"The catalog is being built."));
  }
  return *m_pModules;
}

STDMETHODIMP CMMCatalog::Reserved1(long, long, long* result) { return Zero(result); }

STDMETHODIMP CMMCatalog::Reserved2(long, long* result) { return Zero(result); }

STDMETHODIMP CMMCatalog::Refresh(long* result) {
  *result = 0;
  return MethodBoundary([&] {
    RunRefresh();
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::get_Sources(IMMSources** sources) {
  return FillOut(sources, [&] {
    RequireModules();
    const auto collection = CComObject<CMMSources>::Create();
    const CGatePass pass;
    int position = 0;
    for (const auto& [folder, source] : CCatalogState::Instance().sources) {
      const auto item = CComObject<CMMSource>::Create();
      item->Init(*source);
      collection->Add(CWideString::Format(L"%d", ++position), item.Get());
    }
    RaiseIfFailed(collection.QueryInterface(sources));
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::get_MergeModules(IMergeModules** modules) {
  return MethodBoundary([&]() -> HRESULT {
    if (!modules) {
      return E_POINTER;
    }
    RunRefresh();
    IMergeModules* const current = RequireModules().NewReference();
    // The caller may pass in the list of an earlier call, which is released.
    if (IMergeModules* const held = std::exchange(*modules, current)) {
      held->Release();
    }
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
    const CGatePass pass;
    const CModuleList matches = MatchModules(RequireModules(), query);
    *count = static_cast<long>(matches.Records().size());
    *modules = matches.NewReference();
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::FindModules(BSTR* key, BSTR version, long, IMergeModules** modules,
                                     long* count) {
  return Find(
      [&] {
        RaiseIfFailed(key ? S_OK : E_POINTER);
        ModuleQuery query = QueryOfKey(*key, version);
        query.language.clear();
        return query;
      },
      modules, count);
}

STDMETHODIMP CMMCatalog::Reserved7(long* result) { return Zero(result); }

STDMETHODIMP CMMCatalog::Reserved8(long, long* result) { return Zero(result); }

STDMETHODIMP CMMCatalog::Reserved9(long) { return S_OK; }

STDMETHODIMP CMMCatalog::CatalogQuery(VARIANT query, VARIANT* count, VARIANT* modules) {
  return MethodBoundary([&]() -> HRESULT {
    if (!modules) {
      return E_POINTER;
    }
    modules->vt = VT_EMPTY;
    // Read before the list is used: this may run a script's code, which may refresh the catalog.
    const ModuleQuery wanted = QueryOfArgument(query);
    const CGatePass pass;
    const CModuleList matches = MatchModules(RequireModules(), wanted);
    GiveCount(static_cast<long>(matches.Records().size()), count);
    modules->pdispVal = matches.NewReference();
    modules->vt = VT_DISPATCH;
    return S_OK;
  });
}

STDMETHODIMP CMMCatalog::FindModule(BSTR key, BSTR version, long, IMergeModules** modules,
                                    long* count) {
  return Find([&] { return QueryOfKey(key, version); }, modules, count);
}

STDMETHODIMP CMMCatalog::GetModuleForFile(BSTR fileName, BSTR* key) {
  return AnswerText(key, [&] { return FindModuleForFile(ViewOf(fileName)); });
}

STDMETHODIMP CMMCatalog::GetModuleDisplayName(BSTR key, BSTR* name) {
  return AnswerText(name, [&] {
    CWideString text = ViewOf(key);
    CIniIndexes::Instance().LookupModuleName(text, text);
    return text;
  });
}

STDMETHODIMP CMMCatalog::SupportsProject(IUnknown* project, VARIANT_BOOL* supported) {
  return AnswerSupportsProject(project, supported, [](long kind) {
    return kind == ProjectKind_Installer || kind == ProjectKind_InstallerVariant;
  });
}
