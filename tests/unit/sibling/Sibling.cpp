// A component DLL for the loader's tests: well-behaved and broken classes, told apart by the first
// field of the class identifier.

#include <windows.h>

namespace {

LONG g_objects = 0;

/// Class 1: makes objects that do nothing. Class 2: answers success without an object. Class 3:
/// fails and tells its story. There are no others.
class CSibling final : public IClassFactory {
 public:
  explicit CSibling(ULONG kind) noexcept : m_kind(kind) { ::InterlockedIncrement(&g_objects); }
  virtual ~CSibling() { ::InterlockedDecrement(&g_objects); }
  CSibling(const CSibling&) = delete;
  CSibling& operator=(const CSibling&) = delete;

  STDMETHOD(QueryInterface)(REFIID, void** out) override {
    AddRef();
    *out = this;
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
  STDMETHOD(CreateInstance)(IUnknown*, REFIID, void** out) override {
    *out = nullptr;
    switch (m_kind) {
      case 1:
        return QueryInterface(__uuidof(IUnknown), out);
      case 2:
        return S_OK;
      default:
        return TellStory();
    }
  }
  STDMETHOD(LockServer)(BOOL) override { return S_OK; }

 private:
  static HRESULT TellStory() {
    ICreateErrorInfo* create = nullptr;
    ::CreateErrorInfo(&create);
    wchar_t story[] = L"The sibling is out of order.";
    create->SetDescription(story);
    IErrorInfo* info = nullptr;
    create->QueryInterface(__uuidof(IErrorInfo), reinterpret_cast<void**>(&info));
    ::SetErrorInfo(0, info);
    info->Release();
    create->Release();
    return E_ACCESSDENIED;
  }

  ULONG m_kind;
  LONG m_references = 0;
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  *out = nullptr;
  if (clsid.Data1 < 1 || clsid.Data1 > 3) {
    return CLASS_E_CLASSNOTAVAILABLE;
  }
  return (new CSibling(clsid.Data1))->QueryInterface(iid, out);
}

STDAPI DllCanUnloadNow() { return g_objects == 0 ? S_OK : S_FALSE; }
