#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "common/ComPtr.h"

namespace qm::tests {

/// Initialises COM on this thread while in scope. Declare it before the objects that need it.
class ComThread {
 public:
  ComThread() { ::CoInitialize(nullptr); }
  ~ComThread() { ::CoUninitialize(); }
  ComThread(const ComThread&) = delete;
  ComThread& operator=(const ComThread&) = delete;
};

/// A DLL of COM classes, used only through its exports.
class ComDll {
 public:
  ComDll() = default;
  explicit ComDll(const std::wstring& path) : m_module(::LoadLibraryW(path.c_str())) {}
  ~ComDll() { Unload(); }
  ComDll(const ComDll&) = delete;
  ComDll& operator=(const ComDll&) = delete;

  void Load(const std::wstring& path) { m_module = ::LoadLibraryW(path.c_str()); }
  void Unload() {
    if (const HMODULE module = std::exchange(m_module, nullptr)) {
      ::FreeLibrary(module);
    }
  }
  /// Null if the DLL could not be loaded.
  HMODULE Module() const { return m_module; }

  HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    return Export<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(
        clsid, iid, out);
  }
  HRESULT DllCanUnloadNow() const { return CallPlain("DllCanUnloadNow"); }
  HRESULT DllRegisterServer() const { return CallPlain("DllRegisterServer"); }
  HRESULT DllUnregisterServer() const { return CallPlain("DllUnregisterServer"); }

  common::ComPtr<IClassFactory> Factory(REFCLSID clsid) const {
    common::ComPtr<IClassFactory> factory;
    DllGetClassObject(clsid, __uuidof(IClassFactory), reinterpret_cast<void**>(factory.Put()));
    return factory;
  }
  /// Returns a new object; null if it cannot be created.
  template <class Interface>
  common::ComPtr<Interface> Create(REFCLSID clsid) const {
    common::ComPtr<Interface> object;
    if (const common::ComPtr<IClassFactory> factory = Factory(clsid)) {
      factory->CreateInstance(nullptr, __uuidof(Interface), reinterpret_cast<void**>(object.Put()));
    }
    return object;
  }

 private:
  template <class Function>
  Function Export(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_module, name)));
  }
  HRESULT CallPlain(const char* name) const { return Export<HRESULT(STDAPICALLTYPE*)()>(name)(); }

  HMODULE m_module = nullptr;
};

}  // namespace qm::tests
