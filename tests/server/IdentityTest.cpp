#include "tests/support/Answers.h"
#include "tests/support/ServerTest.h"
#include "tests/support/TaskMemory.h"

namespace {

/// An object of the server and what it answers to QueryInterface, IUnknown aside.
struct Sample {
  std::wstring name;
  CComPtr<IUnknown> object;
  std::vector<IID> interfaces;
};

CComPtr<IUnknown> Query(IUnknown* object, REFIID iid) {
  CComPtr<IUnknown> found;
  EXPECT_EQ(S_OK, object->QueryInterface(iid, reinterpret_cast<void**>(found.Put())));
  return found;
}

class IdentityTest : public CServerTest {
 protected:
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
    const CComPtr<IMergeModuleTavik> module = OpenRichModule();
    std::vector<Sample> samples{{L"factory", m_server.Factory().Get(), {__uuidof(IClassFactory)}},
                                {L"module",
                                 module.Get(),
                                 {dispatch, errorInfo, __uuidof(IMergeModule),
                                  __uuidof(IMergeModule2), __uuidof(IMergeModuleTavik)}}};
    for (const auto& of : collections) {
      CVariant collection, item, first(1);
      CComPtr<IUnknown> enumerator;
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
    const CComPtr<IUnknown> identity = Query(sample.object.Get(), __uuidof(IUnknown));
    for (const IID& from : sample.interfaces) {
      const CComPtr<IUnknown> object = Query(sample.object.Get(), from);
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
    if (sample.name == L"module") {
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
    CComPtr<ISupportErrorInfo> support;
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

/// An object that aggregates the module, hands out its interfaces and counts its references.
class COuter final : public IUnknown {
 public:
  virtual ~COuter() = default;
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    if (iid != __uuidof(IUnknown)) {
      return m_inner->QueryInterface(iid, out);
    }
    *out = this;
    AddRef();
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return ++m_references; }
  STDMETHOD_(ULONG, Release)() override { return --m_references; }

  CComPtr<IUnknown> m_inner;
  ULONG m_references = 1;
};

TEST_F(IdentityTest, AnAggregatedModuleDelegatesToItsOuterObject) {
  const CComPtr<IClassFactory> factory = m_server.Factory();
  COuter outer;
  void* refused = &outer;
  EXPECT_EQ(CLASS_E_NOAGGREGATION,
            factory->CreateInstance(&outer, __uuidof(IMergeModule), &refused));
  EXPECT_EQ(nullptr, refused);

  ASSERT_EQ(S_OK, factory->CreateInstance(&outer, __uuidof(IUnknown),
                                          reinterpret_cast<void**>(outer.m_inner.Put())));
  EXPECT_EQ(1u, outer.m_references);
  EXPECT_EQ(outer.m_inner.Get(), Query(outer.m_inner.Get(), __uuidof(IUnknown)).Get());

  CComPtr<IMergeModule> module;
  ASSERT_EQ(S_OK, outer.m_inner.QueryInterface(module.Put()));
  EXPECT_EQ(2u, outer.m_references);
  EXPECT_EQ(3u, module->AddRef());
  EXPECT_EQ(2u, module->Release());
  EXPECT_EQ(&outer, Query(module.Get(), __uuidof(IUnknown)).Get());
  const CComPtr<IUnknown> errorInfo = Query(module.Get(), __uuidof(ISupportErrorInfo));
  EXPECT_EQ(module.Get(), Query(errorInfo.Get(), __uuidof(IMergeModule)).Get());
  EXPECT_EQ(S_OK, Open(module.Get(), m_rich));
  EXPECT_EQ(L"3.1.4", ReadModule(module.Get(), Route::Dispatch)[L"Version"]);
}

TEST_F(IdentityTest, WhateverAClientHoldsLocksTheServer) {
  for (size_t i = 0; i < MakeSamples().size(); ++i) {
    std::vector<Sample> samples = MakeSamples();
    SCOPED_TRACE(testing::PrintToString(samples[i].name));
    CComPtr<IUnknown> last = samples[i].object;
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

TEST_F(IdentityTest, ClassObjectsAreMadeOnceAndForKnownClassesAlone) {
  const IID factory = __uuidof(IClassFactory);
  void* none = nullptr;
  for (const CLSID& clsid :
       {factory, CLSID_MMCatalog, CLSID_MMCatalogPro, CLSID_MMCatalogManager}) {
    none = this;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, m_server.DllGetClassObject(clsid, factory, &none));
    EXPECT_EQ(nullptr, none);
  }
  none = this;
  EXPECT_EQ(E_NOINTERFACE,
            m_server.DllGetClassObject(CLSID_MergeModule2, __uuidof(IDispatch), &none));
  EXPECT_EQ(nullptr, none);
  EXPECT_EQ(E_POINTER, m_server.DllGetClassObject(CLSID_MergeModule2, factory, nullptr));
  EXPECT_EQ(m_server.Factory().Get(), m_server.Factory().Get());
  EXPECT_EQ(E_POINTER, m_server.Factory()->CreateInstance(nullptr, __uuidof(IUnknown), nullptr));
  none = this;
  EXPECT_EQ(E_NOINTERFACE, m_server.Factory()->CreateInstance(nullptr, __uuidof(IStream), &none));
  EXPECT_EQ(nullptr, none);
}

TEST_F(IdentityTest, TheServerUnloadsAndLoadsAgain) {
  const long loaded = TaskMemoryBlocks();
  m_server.Unload();
  EXPECT_EQ(nullptr, ::GetModuleHandleW(CServerLibrary::Path().c_str()));
  EXPECT_GT(loaded, TaskMemoryBlocks()) << "the type library is still loaded";
  m_server.Load();
  EXPECT_EQ(L"True", ReadModule(OpenRichModule().Get(), Route::Dispatch)[L"Present"]);
  Settle();
}

}  // namespace
