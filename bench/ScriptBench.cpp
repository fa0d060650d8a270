// bench_script SCRIPT FOLDER [REPETITIONS]: calls a script's procedure List with a folder. Prints
// the milliseconds of the first call and, if REPETITIONS is given, the median of that many further
// calls. VBScript runs in this process as it does in cscript; it is measured from outside because a
// script's own clock advances only 64 times a second.

#include <windows.h>
// The header below needs its types.
#include <activscp.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"

namespace {

[[noreturn]] void Fail(const wchar_t* what, HRESULT hr) {
  std::fprintf(stderr, "bench_script: %ls: 0x%08lX\n", what, static_cast<unsigned long>(hr));
  std::exit(1);
}

void Check(const wchar_t* what, HRESULT hr) {
  if (FAILED(hr)) {
    Fail(what, hr);
  }
}

/// The site of a script engine. Ends the program at the first error of the script. Lives on the
/// stack and outlives the engine, so references are not counted.
class Site final : public IActiveScriptSite {
 public:
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override {
    *out = iid == __uuidof(IUnknown) || iid == __uuidof(IActiveScriptSite) ? this : nullptr;
    return *out ? S_OK : E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }

  STDMETHOD(GetLCID)(LCID*) override { return E_NOTIMPL; }
  STDMETHOD(GetItemInfo)(const wchar_t*, DWORD, IUnknown**, ITypeInfo**) override {
    return TYPE_E_ELEMENTNOTFOUND;
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
    Fail((L"line " + std::to_wstring(line + 1)).c_str(), exception.scode);
  }
  STDMETHOD(OnEnterScript)() override { return S_OK; }
  STDMETHOD(OnLeaveScript)() override { return S_OK; }
};

/// Reads an ASCII file.
std::wstring ReadText(const wchar_t* path) {
  FILE* const file = ::_wfopen(path, L"rb");
  if (!file) {
    Fail(path, HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  }
  std::wstring text;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
    text += static_cast<wchar_t>(c);
  }
  std::fclose(file);
  return text;
}

qm::common::ComPtr<IActiveScript> StartScript(IActiveScriptSite& site, const std::wstring& text) {
  CLSID clsid{};
  qm::common::ComPtr<IActiveScript> engine;
  qm::common::ComPtr<IActiveScriptParse> parser;
  Check(L"VBScript", ::CLSIDFromProgID(L"VBScript", &clsid));
  Check(L"engine", ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript),
                                      reinterpret_cast<void**>(engine.Put())));
  Check(L"parser", engine.QueryInterface(parser.Put()));
  Check(L"parser", parser->InitNew());
  Check(L"site", engine->SetScriptSite(&site));
  Check(L"start", engine->SetScriptState(SCRIPTSTATE_STARTED));
  Check(L"script", parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0, 0,
                                           nullptr, nullptr));
  return engine;
}

void Measure(IActiveScript& engine, const wchar_t* folder, int repetitions) {
  qm::common::ComPtr<IDispatch> globals;
  Check(L"globals", engine.GetScriptDispatch(nullptr, globals.Put()));
  wchar_t name[] = L"List";
  LPOLESTR names[] = {name};
  DISPID list = 0;
  Check(name, globals->GetIDsOfNames(GUID_NULL, names, 1, LOCALE_USER_DEFAULT, &list));
  const qm::common::UniqueBstr text(qm::common::TryAllocateBstr(folder));
  VARIANT argument;
  argument.vt = VT_BSTR;
  argument.bstrVal = text.Get();
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  const auto call = [&] {
    return qm::bench::Milliseconds([&] {
      Check(name, globals->Invoke(list, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments,
                                  nullptr, nullptr, nullptr));
    });
  };
  qm::bench::PrintRun("first", call());
  if (repetitions > 0) {
    std::vector<double> times(static_cast<std::size_t>(repetitions));
    for (double& time : times) {
      time = call();
    }
    qm::bench::PrintRun("second", qm::bench::Median(times));
  }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc != 3 && argc != 4) {
    std::fputs("usage: bench_script SCRIPT FOLDER [REPETITIONS]\n", stderr);
    return 2;
  }
  ::CoInitialize(nullptr);
  Site site;
  const qm::common::ComPtr<IActiveScript> engine = StartScript(site, ReadText(argv[1]));
  Measure(*engine, argv[2], argc == 4 ? ::_wtoi(argv[3]) : 0);
  engine->Close();
  return 0;
}
