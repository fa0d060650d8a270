#include "tests/support/ScriptHost.h"

#include <activscp.h>

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "tests/support/Answers.h"

namespace {

/// Lives on the stack for longer than the engine.
class CSite final : public IActiveScriptSite {
 public:
  explicit CSite(IDispatch* object) : m_object(object) {}

  const std::wstring& Failure() const { return m_failure; }

  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    *out = iid == __uuidof(IUnknown) || iid == __uuidof(IActiveScriptSite) ? this : nullptr;
    return *out ? S_OK : E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }

  STDMETHOD(GetLCID)(LCID*) override { return E_NOTIMPL; }
  STDMETHOD(GetItemInfo)(const wchar_t*, DWORD mask, IUnknown** item, ITypeInfo** type) override {
    if (mask & SCRIPTINFO_ITYPEINFO) {
      *type = nullptr;
    }
    if (mask & SCRIPTINFO_IUNKNOWN) {
      *item = CComPtr<IDispatch>(m_object).Detach();
    }
    return S_OK;
  }
  STDMETHOD(GetDocVersionString)(BSTR*) override { return E_NOTIMPL; }
  STDMETHOD(OnScriptTerminate)(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  STDMETHOD(OnStateChange)(SCRIPTSTATE) override { return S_OK; }
  STDMETHOD(OnScriptError)(IActiveScriptError* error) override {
    EXCEPINFO exception{};
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetExceptionInfo(&exception);
    error->GetSourcePosition(&context, &line, &column);
    const CUniqueBstr description(exception.bstrDescription), source(exception.bstrSource),
        helpFile(exception.bstrHelpFile);
    m_failure = FailureText(exception.scode, L"line " + std::to_wstring(line + 1) + L" ") +
                std::wstring(ViewOf(description.Get()));
    return S_OK;
  }
  STDMETHOD(OnEnterScript)() override { return S_OK; }
  STDMETHOD(OnLeaveScript)() override { return S_OK; }

 private:
  IDispatch* m_object;
  std::wstring m_failure;
};

}  // namespace

std::wstring RunScript(const wchar_t* language, const std::wstring& code, IDispatch* object,
                       const wchar_t* name) {
  CSite site(object);
  CLSID clsid{};
  CComPtr<IActiveScript> engine;
  ::CLSIDFromProgID(language, &clsid);
  const HRESULT hr =
      ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript),
                         reinterpret_cast<void**>(engine.Put()));
  if (FAILED(hr)) {
    return FailureText(hr, L"no engine");
  }
  CComPtr<IActiveScriptParse> parser;
  engine.QueryInterface(parser.Put());
  parser->InitNew();
  engine->SetScriptSite(&site);
  if (object) {
    engine->AddNamedItem(name, SCRIPTITEM_ISVISIBLE);
  }
  engine->SetScriptState(SCRIPTSTATE_STARTED);
  EXCEPINFO toldToTheSite{};
  parser->ParseScriptText(code.c_str(), nullptr, nullptr, nullptr, 0, 0, 0, nullptr,
                          &toldToTheSite);
  CVariant result;
  CComPtr<IDispatch> globals;
  engine->GetScriptDispatch(nullptr, globals.Put());
  Invoke(globals.Get(), L"result", DISPATCH_PROPERTYGET, nullptr, &result);
  ::VariantChangeType(&result, &result, 0, VT_BSTR);
  globals.Release();
  engine->Close();
  return site.Failure().empty() ? std::wstring(ViewOf(result.bstrVal)) : site.Failure();
}
