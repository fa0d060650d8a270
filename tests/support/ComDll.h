#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "common/ComPtr.h"

/// Keeps COM on this thread; declared before the objects that need it.
class CComThread {
 public:
  CComThread() { ::CoInitialize(nullptr); }
  ~CComThread() { ::CoUninitialize(); }
  CComThread(const CComThread&) = delete;
  CComThread& operator=(const CComThread&) = delete;
};

/// A DLL of COM classes, reached through its exports alone.
class CComDll {
 public:
  CComDll() = default;
  explicit CComDll(const std::wstring& path) : m_module(::LoadLibraryW(path.c_str())) {}
  ~CComDll() { Unload(); }
  CComDll(const CComDll&) = delete;
  CComDll& operator=(const CComDll&) = delete;

  void Load(const std::wstring& path) { m_module = ::LoadLibraryW(path.c_str()); }
  void Unload() {
    if (const HMODULE module = std::exchange(m_module, nullptr)) {
      ::FreeLibrary(module);
    }
  }
  /// Null when the DLL could not be loaded.
  HMODULE Module() const { return m_module; }

  HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    return Export<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(
        clsid, iid, out);
  }
  HRESULT DllCanUnloadNow() const { return CallPlain("DllCanUnloadNow"); }
  HRESULT DllRegisterServer() const { return CallPlain("DllRegisterServer"); }
  HRESULT DllUnregisterServer() const { return CallPlain("DllUnregisterServer"); }

  CComPtr<IClassFactory> Factory(REFCLSID clsid) const {
    CComPtr<IClassFactory> factory;
    DllGetClassObject(clsid, __uuidof(IClassFactory), reinterpret_cast<void**>(factory.Put()));
    return factory;
  }
  /// A new object; none when it cannot be created.
  template <class Interface>
  CComPtr<Interface> Create(REFCLSID clsid) const {
    CComPtr<Interface> object;
    if (const CComPtr<IClassFactory> factory = Factory(clsid)) {
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
