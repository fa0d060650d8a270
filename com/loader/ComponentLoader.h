#pragma once

#include <map>

#include "common/ComPtr.h"
#include "common/WideString.h"

namespace qm::com {

/// Finds, loads and unloads the sibling components of the product, which are DLLs at known places
/// around the server, and creates their objects. Loads nothing from the current folder or the
/// search path.
///
/// Thread-safe: every function that loads or unloads enters the ApartmentGate, also because loading
/// changes the current folder of the process. Failures are raised, with a description that begins
/// with the DLL's name.
class ComponentLoader {
 public:
  /// `serverFolder` is the folder of the server's own file. The product's folder lies below
  /// `commonFilesFolder`.
  ComponentLoader(common::WideString serverFolder, common::WideString commonFilesFolder);

  /// Returns the loader of this DLL, created at first use.
  static ComponentLoader& Instance();

  /// Returns the nearest folder "System" that contains `dll`, among those in the folders above the
  /// server's own. Empty if no folder up to the root has one.
  common::WideString FindSystemFolder(const wchar_t* dll) const;

  /// Returns the function that `dll` exports as `name`, and loads the DLL if necessary. A name with
  /// a backslash is a path. Any other DLL is looked for in the server's folder, its "System"
  /// subfolder, the product folder below the common files, and the folder of FindSystemFolder, in
  /// this order.
  template <class Function>
  Function GetFunction(const wchar_t* dll, const char* name) {
    return reinterpret_cast<Function>(GetFunctionAddress(dll, name));
  }

  /// Creates an object of `clsid`: from `dll` if that is loaded or lies at one of the first three
  /// places that GetFunction searches, otherwise as registered on the machine.
  template <class Interface>
  common::ComPtr<Interface> Create(const wchar_t* dll, REFCLSID clsid) {
    common::ComPtr<Interface> object;
    Create(dll, clsid, __uuidof(Interface), reinterpret_cast<void**>(object.Put()));
    return object;
  }

  /// Frees every loaded DLL whose DllCanUnloadNow returns S_OK. A DLL without that export stays
  /// loaded. Does nothing while another thread owns the ApartmentGate.
  void UnloadIdle() noexcept;

 private:
  /// Orders DLL names ignoring case. Lookups need no WideString.
  struct IgnoringCase {
    using is_transparent = void;
    bool operator()(const common::WideString& a, const common::WideString& b) const noexcept;
    bool operator()(const common::WideString& a, const wchar_t* b) const noexcept;
    bool operator()(const wchar_t* a, const common::WideString& b) const noexcept;
  };

  void* GetFunctionAddress(const wchar_t* dll, const char* name);
  void Create(const wchar_t* dll, REFCLSID clsid, REFIID iid, void** out);
  common::WideString FindDllPath(const wchar_t* dll) const;
  HMODULE FindLoadedDll(const wchar_t* dll) const noexcept;
  HMODULE TryLoad(const wchar_t* dll, const common::WideString& path, DWORD& code);

  common::WideString m_strServerFolder;
  common::WideString m_strCommonFilesFolder;
  std::map<common::WideString, HMODULE, IgnoringCase> m_loaded;
};

/// Unloads idle siblings if the loader of this DLL has been created.
void UnloadIdleSiblings() noexcept;

}  // namespace qm::com
