// Lists the catalog of merge modules, or the modules with one ID. This client uses only the
// published interfaces of the server and calls them through their vtables.
//
//   ListCatalog [ID[:LANGUAGE]]
//
// It needs idl/qmmmupdater.h, ole32 and oleaut32:
//
//   i686-w64-mingw32-windres ListCatalog.rc resources.o
//   i686-w64-mingw32-g++ -std=c++17 -municode -DUNICODE -static -I ../../include
//     ListCatalog.cpp resources.o -lole32 -loleaut32 -o ListCatalog.exe
//
// (x86_64-w64-mingw32 makes a 64-bit program, for which the manifest must name amd64.)
//
// With ListCatalog.rc it uses the server in its own folder, without registration; without that
// resource script it uses the registered server. Exits with 0, with 3 if there is no such module,
// or with 5 after a failure.

#include <windows.h>

#include <cstdio>
#include <string>

#include "idl/qmmmupdater.h"

namespace {

/// Thrown for a call that failed.
struct Failure {
  HRESULT result;
};

void Check(HRESULT result) {
  if (FAILED(result)) {
    throw Failure{result};
  }
}

/// Owns a reference to an object.
template <class Interface>
class Reference {
 public:
  Reference() = default;
  ~Reference() {
    if (m_object) {
      m_object->Release();
    }
  }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  Interface** Put() { return &m_object; }
  Interface* operator->() const { return m_object; }
  Interface& operator*() const { return *m_object; }

 private:
  Interface* m_object = nullptr;
};

/// Owns a BSTR that is passed to or returned by the server.
class Text {
 public:
  explicit Text(const wchar_t* text = nullptr) : m_text(::SysAllocString(text)) {}
  ~Text() { ::SysFreeString(m_text); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  BSTR Get() const { return m_text; }
  BSTR* Put() { return &m_text; }

  std::string Utf8() const {
    const int length = static_cast<int>(::SysStringLen(m_text));
    std::string utf8(static_cast<size_t>(length) * 3, '\0');
    utf8.resize(static_cast<size_t>(::WideCharToMultiByte(
        CP_UTF8, 0, m_text, length, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr)));
    return utf8;
  }

 private:
  BSTR m_text;
};

void ShowModule(IMergeModule& module) {
  Text key;
  Text version;
  Text displayName;
  Check(module.get_Key(key.Put()));
  Check(module.get_Version(version.Put()));
  Check(module.get_DisplayName(displayName.Put()));
  std::printf("%s %s %s\n", key.Utf8().c_str(), version.Utf8().c_str(), displayName.Utf8().c_str());
}

/// Shows the modules of a collection and returns their number.
long ShowModules(IMergeModules& modules) {
  long count = 0;
  Check(modules.get_Count(&count));
  for (long number = 1; number <= count; ++number) {
    VARIANT index;
    index.vt = VT_I4;
    index.lVal = number;
    Reference<IMergeModule> module;
    Check(modules.get_Item(index, module.Put()));
    ShowModule(*module);
  }
  return count;
}

/// Shows the modules with `key`, or all modules if it is null. Returns their number.
long ShowCatalog(const wchar_t* key) {
  CLSID clsid;
  Check(::CLSIDFromProgID(L"QmMMUpdater.MMCatalog", &clsid));
  Reference<IMMCatalogVelmora> catalog;
  Check(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IMMCatalogVelmora),
                           reinterpret_cast<void**>(catalog.Put())));
  Reference<IMergeModules> modules;
  if (key) {
    const Text query(key);
    long count = 0;
    Check(catalog->FindModule(query.Get(), nullptr, 0, modules.Put(), &count));
  } else {
    Check(catalog->get_MergeModules(modules.Put()));
  }
  return ShowModules(*modules);
}

/// Shows the code of a failure and the server's description.
void ShowFailure(const Failure& failure) {
  Text description;
  Reference<IErrorInfo> info;
  if (::GetErrorInfo(0, info.Put()) == S_OK) {
    info->GetDescription(description.Put());
  }
  std::fprintf(stderr, "ListCatalog: 0x%08lX %s\n", static_cast<unsigned long>(failure.result),
               description.Utf8().c_str());
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  ::SetConsoleOutputCP(CP_UTF8);
  if (FAILED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
    return 5;
  }
  int exitCode = 5;
  try {
    exitCode = ShowCatalog(argc > 1 ? argv[1] : nullptr) > 0 ? 0 : 3;
  } catch (const Failure& failure) {
    ShowFailure(failure);
  }
  ::CoUninitialize();
  return exitCode;
}
