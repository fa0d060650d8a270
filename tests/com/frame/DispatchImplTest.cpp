#include "com/frame/ComModule.h"
#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/ModuleLifetime.h"
#include "idl/qmmmupdater.h"
#include "tests/support/Testing.h"

namespace {

constexpr CLSID kProbeClass = {0x5DA1A6F2, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr CLSID kOtherClass = {0x5DA1A6F3, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};

/// A class that shows what the frame does with its objects.
class CProbe : public IDispatchImpl<IMMCatalogManagerVelmora>, public CComObjectRoot {
 public:
  using InterfaceMap =
      CInterfaceMap<Via<IMMCatalogManagerVelmora, IMMCatalogManagerVelmora, IDispatch>>;

  CProbe() : m_memory(std::wstring(100, L'x')) { ++s_live; }
  CProbe(const CProbe&) = delete;
  CProbe& operator=(const CProbe&) = delete;
  virtual ~CProbe() { --s_live; }
  HRESULT FinalConstruct() noexcept { return s_finalConstruct; }

  /// Kind 0 gives this object, 1 one that knows no IDispatch; others fail without a reason.
  STDMETHOD(GetCatalog)(long kind, IUnknown** catalog) override {
    switch (kind) {
      case 0:
        return QueryInterface(__uuidof(IUnknown), reinterpret_cast<void**>(catalog));
      case 1:
        return ::CreateErrorInfo(reinterpret_cast<ICreateErrorInfo**>(catalog));
      default:
        return E_ABORT;
    }
  }

  static inline int s_live = 0;
  static inline HRESULT s_finalConstruct = S_OK;

 private:
  CWideString m_memory;
};

/// Outer object of an aggregation.
class COuter : public IUnknown {
 public:
  virtual ~COuter() = default;
  STDMETHOD(QueryInterface)(REFIID, void**) override { return E_NOINTERFACE; }
  STDMETHOD_(ULONG, AddRef)() override { return ++references; }
  STDMETHOD_(ULONG, Release)() override { return --references; }
  ULONG references = 1;
};

class Frame : public ::testing::Test {
 protected:
  void SetUp() override {
    static const ObjectMapEntry entries[] = {
        {&kOtherClass, L"Test.Other.1", L"Test.Other", 0, &CreateComObject<CProbe>},
        {&kProbeClass, L"Test.Probe.1", L"Test.Probe", 0, &CreateComObject<CProbe>},
    };
    m_module.Init({entries, std::size(entries), nullptr, &LIBID_QMMMUpdaterLib, L"qmmmupdater.tlb"},
                  nullptr);
  }
  void TearDown() override {
    EndModuleLifetime();
    EXPECT_EQ(0, ModuleLock::Count());
    EXPECT_EQ(0, CProbe::s_live);
  }

  CComPtr<IClassFactory> Factory(REFCLSID clsid = kProbeClass) {
    CComPtr<IClassFactory> factory;
    EXPECT_EQ(S_OK, m_module.GetClassObject(clsid, __uuidof(IClassFactory),
                                            reinterpret_cast<void**>(factory.Put())));
    return factory;
  }

  CComModule& m_module = CComModule::Instance();
};

TEST_F(Frame, FactoriesAreCachedAndOnlyClientsLock) {
  IClassFactory* const first = Factory().Get();  // held by the module alone from here on
  EXPECT_EQ(0, ModuleLock::Count());
  EXPECT_NE(first, Factory(kOtherClass).Get());
  {
    const CComPtr<IClassFactory> factory = Factory();
    EXPECT_EQ(first, factory.Get());
    EXPECT_EQ(1, ModuleLock::Count());
    factory->LockServer(TRUE);
    CComPtr<IDispatch> object;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, __uuidof(IDispatch),
                                            reinterpret_cast<void**>(object.Put())));
    const CComPtr<IClassFactory> again = Factory();
    EXPECT_EQ(3, ModuleLock::Count());  // all references on the factory, the server, the object
  }
  EXPECT_EQ(1, ModuleLock::Count());
  Factory()->LockServer(FALSE);

  // A client may hold one for longer than the module.
  const CComPtr<IClassFactory> kept = Factory();
  EndModuleLifetime();
  EXPECT_EQ(E_POINTER, kept->CreateInstance(nullptr, __uuidof(IUnknown), nullptr));
}

TEST_F(Frame, FailedCreationLeavesNothing) {
  COuter outer;
  void* out = nullptr;
  const auto expectNothing = [&] {
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(0, CProbe::s_live);
    EXPECT_EQ(0, ModuleLock::Count());
    EXPECT_EQ(1U, outer.references);
  };
  const auto create = [&](IUnknown* controlling, REFIID iid) {
    out = &out;
    return Factory()->CreateInstance(controlling, iid, &out);
  };
  Factory();  // makes it
  EXPECT_EQ(E_POINTER, CreateComObject<CProbe>(nullptr, IID_IUnknown, nullptr));
  EXPECT_EQ(E_NOINTERFACE, create(nullptr, __uuidof(IMMFile)));
  expectNothing();
  EXPECT_EQ(CLASS_E_NOAGGREGATION, create(&outer, IID_IDispatch));
  expectNothing();
  IUnknown* const outers[] = {nullptr, &outer};
  for (IUnknown* const controlling : outers) {
    CProbe::s_finalConstruct = E_ACCESSDENIED;
    EXPECT_EQ(E_ACCESSDENIED, create(controlling, IID_IUnknown));
    expectNothing();
    CProbe::s_finalConstruct = S_OK;
    heap::SweepFaults([&] { return create(controlling, IID_IUnknown); }, expectNothing);
    static_cast<IUnknown*>(out)->Release();
  }
}

// ---- IDispatch

class Dispatch : public Frame {
 protected:
  void SetUp() override {
    Frame::SetUp();
    m_object = CComObject<CProbe>::Create();
  }
  void TearDown() override {
    m_object.Release();
    Frame::TearDown();
  }

  HRESULT GetCatalog(long kind, VARIANT* result, EXCEPINFO* exception = nullptr) {
    VARIANT argument;
    argument.vt = VT_I4;
    argument.lVal = kind;
    DISPPARAMS parameters = {&argument, nullptr, 1, 0};
    return m_object->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &parameters, result, exception,
                            nullptr);
  }

  CComPtr<CComObject<CProbe>> m_object;
};

TEST_F(Dispatch, TypeInfo) {
  EXPECT_EQ(E_POINTER, m_object->GetTypeInfoCount(nullptr));
  EXPECT_EQ(E_POINTER, m_object->GetTypeInfo(0, 0, nullptr));
  CComPtr<ITypeInfo> info;
  EXPECT_EQ(DISP_E_BADINDEX, m_object->GetTypeInfo(1, 0, info.Put()));
  EXPECT_FALSE(info);
  for (int i = 0; i < 2; ++i) {  // loaded anew after the module ended
    EXPECT_EQ(S_OK, m_object->GetTypeInfo(0, 0, info.Put()));
    EndModuleLifetime();
  }
  static CTypeInfoHolder unknown(kProbeClass, TypeLibrary::Interfaces);
  EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, unknown.GetTypeInfo(info.Put()));
  EXPECT_FALSE(info);
}

TEST_F(Dispatch, Errors) {
  wchar_t right[] = L"getCATALOG";
  wchar_t wrong[] = L"Wrong";
  DISPID id = 0;
  const auto find = [&](REFIID iid, wchar_t* name, UINT count, DISPID* ids) {
    return m_object->GetIDsOfNames(iid, name ? &name : nullptr, count, 0, ids);
  };
  EXPECT_EQ(S_OK, find(IID_NULL, right, 1, &id));
  EXPECT_EQ(1, id);
  EXPECT_EQ(DISP_E_UNKNOWNNAME, find(IID_NULL, wrong, 1, &id));
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, find(IID_IDispatch, right, 1, &id));
  EXPECT_EQ(E_INVALIDARG, find(IID_NULL, nullptr, 1, &id));
  EXPECT_EQ(E_INVALIDARG, find(IID_NULL, right, 0, &id));
  EXPECT_EQ(E_INVALIDARG, find(IID_NULL, right, 1, nullptr));

  DISPPARAMS none{};
  const auto invoke = [&](DISPID member, REFIID iid, DISPPARAMS* parameters) {
    return m_object->Invoke(member, iid, 0, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, invoke(1, IID_IDispatch, &none));
  EXPECT_EQ(E_INVALIDARG, invoke(1, IID_NULL, nullptr));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(99, IID_NULL, &none));

  // A member that gives no reason is not explained by an older failure.
  LeaveErrorObject(L"older");
  EXCEPINFO exception{};
  EXPECT_EQ(DISP_E_EXCEPTION, GetCatalog(9, nullptr, &exception));
  EXPECT_EQ(E_ABORT, exception.scode);
  EXPECT_EQ(nullptr, exception.bstrDescription);
}

TEST_F(Dispatch, ServesScripts) {
  const VARTYPE types[] = {VT_DISPATCH, VT_UNKNOWN};
  for (long kind = 0; kind < 2; ++kind) {
    VARIANT result;
    ::VariantInit(&result);
    EXPECT_EQ(S_OK, GetCatalog(kind, &result));
    EXPECT_EQ(types[kind], result.vt);
    ::VariantClear(&result);
    EXPECT_EQ(S_OK, GetCatalog(kind, nullptr));
  }
}

}  // namespace
