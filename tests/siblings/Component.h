#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "common/ComPtr.h"
#include "idl/siblings.h"

/// A component DLL, reached through its exports alone.
class CComponent {
 public:
  /// Throws std::runtime_error when the DLL cannot be loaded.
  explicit CComponent(const std::wstring& path);
  ~CComponent();
  CComponent(const CComponent&) = delete;
  CComponent& operator=(const CComponent&) = delete;

  HMODULE Module() const { return m_module; }

  HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) const;
  HRESULT DllCanUnloadNow() const { return CallPlain("DllCanUnloadNow"); }
  HRESULT DllRegisterServer() const { return CallPlain("DllRegisterServer"); }
  HRESULT DllUnregisterServer() const { return CallPlain("DllUnregisterServer"); }

  /// A new object of one of its classes.
  template <class Interface>
  CComPtr<Interface> Create(REFCLSID clsid) const {
    CComPtr<Interface> object;
    Create(clsid, __uuidof(Interface), reinterpret_cast<void**>(object.Put()));
    return object;
  }

 private:
  template <class Function>
  Function Export(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_module, name)));
  }
  HRESULT CallPlain(const char* name) const;
  void Create(REFCLSID clsid, REFIID iid, void** out) const;

  HMODULE m_module;
};

/// Keeps COM on this thread; declared before the objects that need it.
class CComThread {
 public:
  CComThread() { ::CoInitialize(nullptr); }
  ~CComThread() { ::CoUninitialize(); }
  CComThread(const CComThread&) = delete;
  CComThread& operator=(const CComThread&) = delete;
};

/// Expects that scripts know these members, given in slot order and divided by blanks, by dispatch
/// identifiers in that order from 1, and Item by 0.
void ExpectMembers(IDispatch* object, const wchar_t* members);

/// Writes `bytes` as the whole content of a file.
void PutFile(const std::wstring& path, std::string_view bytes);
