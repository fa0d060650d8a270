#pragma once

#include <windows.h>

#include "com/frame/ObjectMap.h"
#include "common/ModuleLifetime.h"

class CComClassFactory;

/// The server module: its instance, its coclasses and their class factories, each made at its first
/// use and released when the DLL ends. One per DLL.
class CComModule final : private CModuleLifetimeLink {
 public:
  static CComModule& Instance() noexcept;
  CComModule(const CComModule&) = delete;
  CComModule& operator=(const CComModule&) = delete;

  /// Starts the module. What `objects` points to must outlive it.
  void Init(const ObjectMap& objects, HINSTANCE instance) noexcept;

  HINSTANCE ModuleInstance() const noexcept { return m_instance; }

  /// The class factory of a coclass, made once. CLASS_E_CLASSNOTAVAILABLE when the map lacks it,
  /// E_OUTOFMEMORY.
  HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept;

 private:
  CComModule() noexcept;
  ~CComModule();

  /// Has the C++ runtime make the state that it needs for the first throw of a thread, and of the
  /// process, while memory is there: it does not survive a shortage then.
  void PrepareThreadForExceptions() const noexcept;

  CComClassFactory* FindOrMakeFactory(const ObjectMapEntry& entry) noexcept;
  void End() noexcept override;

  HINSTANCE m_instance = nullptr;
  ObjectMap m_objects{};
  const DWORD m_preparedThreads = ::TlsAlloc();  // freed with all slots, see ThreadSlots.cpp
  CRITICAL_SECTION m_factoryCreation;
  CComClassFactory* m_factories = nullptr;  // chained, each held with one reference
};
