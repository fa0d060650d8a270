#pragma once

#include <windows.h>

#include "common/WideString.h"

/// Creates an object of a class; see CreateComObject.
using ComCreator = HRESULT (*)(IUnknown* outer, REFIID iid, void** out) noexcept;

/// One coclass of the server.
struct ObjectMapEntry {
  const CLSID* clsid;
  const wchar_t* progId;                    ///< with its version, "Server.Class.1"
  const wchar_t* versionIndependentProgId;  ///< "Server.Class"
  UINT descriptionId;                       ///< string resource that describes the class
  ComCreator create;
};

/// The coclasses of a DLL and the type libraries that describe them; the DLL owns it.
struct ObjectMap {
  const ObjectMapEntry* entries;
  size_t count;
  /// The library that the DLL carries as a resource.
  const GUID* classLibrary;
  /// The library of the interfaces and its file, which lies beside the DLL; null when the resource
  /// describes the interfaces too.
  const GUID* interfaceLibrary = nullptr;
  const wchar_t* interfaceLibraryFile = nullptr;
};

/// The library that describes an interface to IDispatch.
enum class TypeLibrary {
  Interfaces,  ///< the file beside the DLL, else the registered one
  Classes,     ///< the resource of the DLL
};

class CComClassFactory;
class CTypeInfoHolder;

/// State of the server module: its instance, coclasses and lock count, the cached class factories
/// and type information. One per DLL.
class CComModule {
 public:
  static CComModule& Instance() noexcept;
  CComModule(const CComModule&) = delete;
  CComModule& operator=(const CComModule&) = delete;

  /// Starts the module. `objects` must outlive it.
  void Init(const ObjectMap& objects, HINSTANCE instance) noexcept;

  /// Releases what is cached. Not to be called when the process ends: other DLLs are gone then.
  void Term() noexcept;

  HINSTANCE ModuleInstance() const noexcept { return m_instance; }

  /// Objects and server locks that are alive.
  LONG LockCount() const noexcept { return m_lockCount; }
  void Lock() noexcept { ::InterlockedIncrement(&m_lockCount); }
  void Unlock() noexcept { ::InterlockedDecrement(&m_lockCount); }

  /// The class factory of a coclass, made once. CLASS_E_CLASSNOTAVAILABLE when the map lacks it,
  /// E_OUTOFMEMORY.
  HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept;

  /// A type library of the server, loaded once. Fails with what the library's loading answers.
  HRESULT GetTypeLibrary(TypeLibrary library, ITypeLib** out) noexcept;

  /// Has `holder` cleared by Term.
  void Adopt(CTypeInfoHolder& holder) noexcept;

 private:
  CComModule() noexcept;
  ~CComModule();

  /// Has the C++ runtime make the state that it needs for the first throw of a thread, and of the
  /// process, while memory is there: it does not survive a shortage then.
  void PrepareThreadForExceptions() const noexcept;

  CComClassFactory* FindOrMakeFactory(const ObjectMapEntry& entry) noexcept;

  HINSTANCE m_instance = nullptr;
  ObjectMap m_objects{};
  LONG m_lockCount = 0;
  const DWORD m_preparedThreads = ::TlsAlloc();
  CRITICAL_SECTION m_factoryCreation;
  CComClassFactory* m_factories = nullptr;  // chained, each held with one reference
  CTypeInfoHolder* m_typeInfoHolders = nullptr;
  ITypeLib* m_typeLibraries[2] = {};
};

/// Full path of a module's file, of any length. Throws qm::win32_exception.
CWideString ModulePath(HINSTANCE instance);

/// Full path of the interface library's file beside the DLL. Throws qm::win32_exception.
CWideString InterfaceLibraryPath(const ObjectMap& objects, HINSTANCE instance);
