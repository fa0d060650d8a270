#include "tests/fakes/OuterObject.h"
#include "tests/support/Answers.h"
#include "tests/support/CatalogFixture.h"
#include "tests/support/TaskMemory.h"

namespace qm::tests {

namespace {

/// An object of the server and what it answers to QueryInterface, IUnknown aside.
struct Sample {
  std::wstring name;
  common::ComPtr<IUnknown> object;
  std::vector<IID> interfaces;
};

common::ComPtr<IUnknown> Query(IUnknown* object, REFIID iid) {
  common::ComPtr<IUnknown> found;
  EXPECT_EQ(S_OK, object->QueryInterface(iid, reinterpret_cast<void**>(found.Put())));
  return found;
}

class IdentityTest : public CatalogFixture {
 protected:
  void SetUp() override {
    CatalogFixture::SetUp();
    SetSearchPath(L"*");
  }

  /// An object of every class.
  std::vector<Sample> MakeSamples() const {
    const struct {
      const wchar_t* name;
      IID collection;
      IID item;
    } collections[] = {
        {L"Dialogs", __uuidof(IMMDialogs), __uuidof(IMMDialog)},
        {L"CustomActions", __uuidof(IMMCustomActions), __uuidof(IMMCustomAction)},
        {L"Dependencies", __uuidof(IMMDependencies), __uuidof(IMMDependency)},
        {L"Exclusions", __uuidof(IMMExclusions), __uuidof(IMMExclusion)},
        {L"Files", __uuidof(IMMFiles), __uuidof(IMMFile)},
        {L"DownloadFiles", __uuidof(IMMGalleryDownloadFilesCaskel), GUID_NULL},
    };
    const IID dispatch = __uuidof(IDispatch), errorInfo = __uuidof(ISupportErrorInfo);
    const std::vector<IID> catalogInterfaces{dispatch, errorInfo, __uuidof(IMMCatalog),
                                             __uuidof(IMMCatalogVelmora),
                                             __uuidof(IMMCatalogCaskel)};
    const common::ComPtr<IMergeModuleTavik> module = OpenRichModule();
    const common::ComPtr<IMMCatalogCaskel> catalog = NewCatalog();
    std::vector<Sample> samples{
        {L"factory", m_server.Factory().Get(), {__uuidof(IClassFactory)}},
        {L"module",
         module.Get(),
         {dispatch, errorInfo, __uuidof(IMergeModule), __uuidof(IMergeModule2),
          __uuidof(IMergeModuleTavik)}},
        {L"catalog", catalog.Get(), catalogInterfaces},
        {L"script catalog", m_server.Create<IUnknown>(CLSID_MMCatalogPro), catalogInterfaces},
        {L"manager",
         m_server.Create<IUnknown>(CLSID_MMCatalogManager),
         {dispatch, errorInfo, __uuidof(IMMCatalogManagerVelmora)}}};
    common::ComPtr<IMMSources> sources;
    common::ComPtr<IMMSource> source;
    catalog->get_Sources(sources.Put());
    sources->get_Item(Variant(1), source.Put());
    samples.push_back(
        {L"modules", ModulesOf(catalog.Get()).Get(), {dispatch, __uuidof(IMergeModules)}});
    samples.push_back({L"sources", sources.Get(), {dispatch, __uuidof(IMMSources)}});
    samples.push_back({L"source", source.Get(), {dispatch, errorInfo, __uuidof(IMMSource)}});
    for (const auto& of : collections) {
      Variant collection, item, first(1);
      common::ComPtr<IUnknown> enumerator;
      Invoke(module.Get(), of.name, DISPATCH_PROPERTYGET, nullptr, &collection);
      CallSlot(collection.pdispVal, 3, enumerator.Put());
      samples.push_back({of.name, collection.pdispVal, {dispatch, of.collection}});
      samples.push_back({L"enumerator", enumerator, {__uuidof(IEnumVARIANT)}});
      if (of.item != GUID_NULL) {
        Invoke(collection.pdispVal, L"Item", DISPATCH_PROPERTYGET, &first, &item);
        samples.push_back({L"item", item.pdispVal, {dispatch, errorInfo, of.item}});
      }
    }
    return samples;
  }
};

TEST_F(IdentityTest, QueryInterfaceFollowsTheRulesOfCom) {
  for (const Sample& sample : MakeSamples()) {
    SCOPED_TRACE(testing::PrintToString(sample.name));
    const common::ComPtr<IUnknown> identity = Query(sample.object.Get(), __uuidof(IUnknown));
    for (const IID& from : sample.interfaces) {
      const common::ComPtr<IUnknown> object = Query(sample.object.Get(), from);
      ASSERT_TRUE(object);
      EXPECT_EQ(identity.Get(), Query(object.Get(), __uuidof(IUnknown)).Get());
      for (const IID& to : sample.interfaces) {
        EXPECT_EQ(Query(sample.object.Get(), to).Get(), Query(object.Get(), to).Get());
      }
      void* none = &none;
      EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(__uuidof(IStream), &none));
      EXPECT_EQ(nullptr, none);
      EXPECT_EQ(E_POINTER, object->QueryInterface(from, nullptr));
    }
    if (sample.interfaces.size() > 3) {  // the versions of one interface share a pointer
      for (const IID& version : sample.interfaces) {
        EXPECT_EQ(version != __uuidof(ISupportErrorInfo),
                  Query(sample.object.Get(), version).Get() ==
                      Query(sample.object.Get(), __uuidof(IDispatch)).Get());
      }
    }
  }
}

TEST_F(IdentityTest, ErrorInfoIsSupportedForTheOwnDualInterfacesAlone) {
  for (const Sample& sample : MakeSamples()) {
    SCOPED_TRACE(testing::PrintToString(sample.name));
    common::ComPtr<ISupportErrorInfo> support;
    if (FAILED(sample.object.QueryInterface(support.Put()))) {
      continue;
    }
    EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(IUnknown)));
    EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(IMMFiles)));
    for (const IID& iid : sample.interfaces) {
      const bool own = iid != __uuidof(IDispatch) && iid != __uuidof(ISupportErrorInfo);
      EXPECT_EQ(own ? S_OK : S_FALSE, support->InterfaceSupportsErrorInfo(iid));
    }
  }
}

TEST_F(IdentityTest, AnAggregatedObjectDelegatesToItsOuterObject) {
  const std::pair<CLSID, IID> classes[] = {
      {CLSID_MergeModule2, __uuidof(IMergeModule)},
      {CLSID_MMCatalog, __uuidof(IMMCatalog)},
      {CLSID_MMCatalogPro, __uuidof(IMMCatalog)},
      {CLSID_MMCatalogManager, __uuidof(IMMCatalogManagerVelmora)}};
  for (const auto& [clsid, iid] : classes) {
    const common::ComPtr<IClassFactory> factory = m_server.Factory(clsid);
    OuterObject outer;
    void* refused = &outer;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(&outer, iid, &refused));
    EXPECT_EQ(nullptr, refused);

    ASSERT_EQ(S_OK, factory->CreateInstance(&outer, __uuidof(IUnknown),
                                            reinterpret_cast<void**>(outer.inner.Put())));
    EXPECT_EQ(1u, outer.references);
    EXPECT_EQ(outer.inner.Get(), Query(outer.inner.Get(), __uuidof(IUnknown)).Get());

    const common::ComPtr<IUnknown> object = Query(outer.inner.Get(), iid);
    EXPECT_EQ(2u, outer.references);
    EXPECT_EQ(3u, object->AddRef());
    EXPECT_EQ(2u, object->Release());
    EXPECT_EQ(&outer, Query(object.Get(), __uuidof(IUnknown)).Get());
    const common::ComPtr<IUnknown> errorInfo = Query(object.Get(), __uuidof(ISupportErrorInfo));
    EXPECT_EQ(object.Get(), Query(errorInfo.Get(), iid).Get());
    common::ComPtr<IMMCatalog> catalog;
    if (SUCCEEDED(object.QueryInterface(catalog.Put()))) {
      long result = 1;
      EXPECT_EQ(S_OK, catalog->Refresh(&result));
      EXPECT_EQ(0, result);
    }
  }
}

TEST_F(IdentityTest, WhateverAClientHoldsLocksTheServer) {
  for (size_t i = 0; i < MakeSamples().size(); ++i) {
    std::vector<Sample> samples = MakeSamples();
    SCOPED_TRACE(testing::PrintToString(samples[i].name));
    common::ComPtr<IUnknown> last = samples[i].object;
    samples.clear();
    EXPECT_EQ(S_FALSE, m_server.DllCanUnloadNow());
    last.Release();
    EXPECT_EQ(S_OK, m_server.DllCanUnloadNow());
  }
  for (const BOOL lock : {TRUE, FALSE}) {
    m_server.Factory()->LockServer(lock);
    EXPECT_EQ(lock ? S_FALSE : S_OK, m_server.DllCanUnloadNow());
  }
}

TEST_F(IdentityTest, TheServerUnloadsAndLoadsAgain) {
  const long loaded = TaskMemoryBlocks();
  m_server.Unload();
  EXPECT_EQ(nullptr, ::GetModuleHandleW(ServerLibrary::Path().c_str()));
  EXPECT_GT(loaded, TaskMemoryBlocks()) << "the type library is still loaded";
  m_server.Load();
  EXPECT_EQ(L"True", ReadModule(OpenRichModule().Get(), Route::Dispatch)[L"Present"]);
  Settle();
}

}  // namespace

}  // namespace qm::tests
