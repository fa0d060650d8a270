// Stands in for Gleaner.dll or QmAppServices.dll, depending on its file name. The environment
// variable QM_SIBLING_FAULT makes one operation misbehave: with "Keys fails" it fails with an error
// object, with "Keys null" it succeeds and returns null.

#include <string>

#include "common/Bstr.h"
#include "idl/siblings.h"
#include "tests/support/ErrorObject.h"

namespace {

LONG g_objects = 0;

HRESULT TellStory() {
  qm::tests::LeaveErrorObject(L"The sibling is out of order.");
  return static_cast<HRESULT>(0x80041234);
}

std::wstring Environment(const wchar_t* variable) {
  wchar_t value[MAX_PATH] = L"";
  ::GetEnvironmentVariableW(variable, value, MAX_PATH);
  return value;
}

/// The result of an operation that must not do its work; S_FALSE if it must.
HRESULT FaultOf(const std::wstring& operation) {
  const std::wstring fault = Environment(L"QM_SIBLING_FAULT");
  return fault == operation + L" fails"  ? TellStory()
         : fault == operation + L" null" ? S_OK
                                         : S_FALSE;
}

HRESULT GiveText(const wchar_t* operation, const std::wstring& text, BSTR* out) {
  *out = nullptr;
  const HRESULT hr = FaultOf(operation);
  if (hr == S_FALSE) {
    *out = qm::common::TryAllocateBstr(text);
  }
  return hr == S_FALSE ? S_OK : hr;
}

/// Class factory, application services and all objects of an INI reader in one. All sections of its
/// file have the same keys. It remembers the key that was requested last.
class Sibling final : public IClassFactory,
                      public IIniReader,
                      public IIniSections,
                      public IIniSection,
                      public IIniKeys,
                      public IIniKey,
                      public IApplicationServices {
 public:
  Sibling() noexcept { ::InterlockedIncrement(&g_objects); }
  virtual ~Sibling() { ::InterlockedDecrement(&g_objects); }
  Sibling(const Sibling&) = delete;
  Sibling& operator=(const Sibling&) = delete;

  static HRESULT Create(REFIID iid, void** out) { return (new Sibling)->QueryInterface(iid, out); }

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    AddRef();
    *out = iid == __uuidof(IIniReader)             ? static_cast<IIniReader*>(this)
           : iid == __uuidof(IApplicationServices) ? static_cast<IApplicationServices*>(this)
                                                   : static_cast<void*>(Factory());
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return static_cast<ULONG>(++m_references); }
  STDMETHOD_(ULONG, Release)() override {
    const LONG left = --m_references;
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHOD(Invoke)
  (DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }

  STDMETHOD(CreateInstance)(IUnknown*, REFIID iid, void** out) override {
    *out = nullptr;
    const HRESULT hr = FaultOf(L"CreateInstance");
    return hr == S_FALSE ? Create(iid, out) : hr;
  }
  STDMETHOD(LockServer)(BOOL) override { return S_OK; }

  STDMETHOD(Load)(BSTR) override {
    const HRESULT hr = FaultOf(L"Load");
    m_loaded = hr == S_FALSE;
    return FAILED(hr) ? hr : S_OK;
  }
  STDMETHOD(get_Sections)(IIniSections** out) override { return GiveItself(L"Sections", out); }
  STDMETHOD(get_Item)(VARIANT, IIniSection** out) override {
    *out = nullptr;
    return m_loaded ? GiveItself(L"Section", out) : S_OK;
  }
  STDMETHOD(get_Keys)(IIniKeys** out) override { return GiveItself(L"Keys", out); }
  STDMETHOD(get_Count)(long* count) override {
    *count = 1;
    const HRESULT hr = FaultOf(L"Count");
    return FAILED(hr) ? hr : S_OK;
  }
  STDMETHOD(get_Item)(VARIANT index, IIniKey** out) override {
    m_byName = index.vt == VT_BSTR;
    const std::wstring_view name = m_byName ? qm::common::ViewOf(index.bstrVal) : L"Key1";
    m_value = name == L"Key1" ? L"item" : name == L"Version" ? L"4.0" : L"rich.msm";
    return GiveItself(m_byName ? L"KeyByName" : L"KeyByNumber", out);
  }
  STDMETHOD(get_Name)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(get_Value)(BSTR* out) override {
    return GiveText(m_byName ? L"Value" : L"ValueByNumber", m_value, out);
  }

  STDMETHOD(get_GalleryRoot)(BSTR* out) override {
    return GiveText(L"GalleryRoot", Environment(L"QM_GALLERY_ROOT"), out);
  }
  STDMETHOD(get_ModuleSearchPath)(BSTR* out) override {
    return GiveText(L"ModuleSearchPath", Environment(L"QM_MODULE_PATH"), out);
  }
  STDMETHOD(Reserved2)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved3)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved4)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved5)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved6)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved7)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved8)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved9)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved10)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved11)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(Reserved12)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(get_FileIndexFolder)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(get_ModuleIndexFolder)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(get_DataFolder)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(get_UserModuleSearchPath)(BSTR*) override { return E_NOTIMPL; }

 private:
  IClassFactory* Factory() noexcept { return this; }

  template <class Interface>
  HRESULT GiveItself(const wchar_t* operation, Interface** out) {
    *out = nullptr;
    const HRESULT hr = FaultOf(operation);
    if (hr == S_FALSE) {
      AddRef();
      *out = this;
    }
    return hr == S_FALSE ? S_OK : hr;
  }

  LONG m_references = 0;
  bool m_loaded = false;
  bool m_byName = false;
  std::wstring m_value;
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  *out = nullptr;
  if (clsid == GUID_NULL) {
    return CLASS_E_CLASSNOTAVAILABLE;
  }
  const HRESULT hr = FaultOf(L"DllGetClassObject");
  return hr == S_FALSE ? Sibling::Create(iid, out) : hr;
}

STDAPI DllCanUnloadNow() { return g_objects == 0 ? S_OK : S_FALSE; }
