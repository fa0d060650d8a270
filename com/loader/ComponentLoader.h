#pragma once

#include <map>

#include "common/ComPtr.h"
#include "common/WideString.h"

/// Finds, loads and unloads the sibling components of the product, DLLs that lie at known places
/// around the server, and creates objects from them. Nothing is loaded from the current folder or
/// the search path.
///
/// Failures are raised, with a description that begins with the DLL's name. Works behind the
/// ApartmentGate: loading changes the current folder of the process.
class CComponentLoader {
 public:
  /// Looks around `serverFolder`, the folder of the server's own file, and in the product's folder
  /// below `commonFilesFolder`.
  CComponentLoader(CWideString serverFolder, CWideString commonFilesFolder);

  /// The loader of this DLL, made at its first use.
  static CComponentLoader& Instance();

  /// The folder "System" that holds `dll` in the nearest folder above the server's own (never in
  /// the server's own); empty if no folder up to the root has it.
  CWideString FindSystemFolder(const wchar_t* dll) const;

  /// The function that `dll` exports as `name`. A DLL that is not loaded yet is taken as it is
  /// named when the name has a backslash; any other from the server's folder, its "System"
  /// subfolder, the product folder below the common files, or the folder of FindSystemFolder, in
  /// this order. Only the project type asks for a function.
  template <class Function>
  Function FunctionOf(const wchar_t* dll, const char* name) {
    return reinterpret_cast<Function>(AddressOf(dll, name));
  }

  /// A new object of `clsid`, from `dll` when that is loaded or lies at one of the first three of
  /// these places, otherwise as registered on the machine.
  template <class Interface>
  CComPtr<Interface> Create(const wchar_t* dll, REFCLSID clsid) {
    CComPtr<Interface> object;
    Create(dll, clsid, __uuidof(Interface), reinterpret_cast<void**>(object.Put()));
    return object;
  }

  /// Frees every loaded DLL whose DllCanUnloadNow answers S_OK; one without that export stays. Does
  /// nothing while another apartment is behind the gate.
  void UnloadIdle() noexcept;

 private:
  /// Compares names, for a search also with a plain text.
  struct IgnoringCase {
    using is_transparent = void;
    bool operator()(const CWideString& a, const CWideString& b) const noexcept;
    bool operator()(const CWideString& a, const wchar_t* b) const noexcept;
    bool operator()(const wchar_t* a, const CWideString& b) const noexcept;
  };

  void* AddressOf(const wchar_t* dll, const char* name);
  void Create(const wchar_t* dll, REFCLSID clsid, REFIID iid, void** out);
  CWideString Find(const wchar_t* dll) const;
  HMODULE Loaded(const wchar_t* dll) const noexcept;
  HMODULE TryLoad(const wchar_t* dll, const CWideString& path, DWORD& code);

  CWideString m_strServerFolder;
  CWideString m_strCommonFilesFolder;
  std::map<CWideString, HMODULE, IgnoringCase> m_loaded;
};

/// Unloads idle siblings, if the loader of this DLL has been used at all.
void UnloadIdleSiblings() noexcept;
