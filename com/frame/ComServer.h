#pragma once

#include <windows.h>

#include "com/frame/ObjectMap.h"
#include "common/DllLifetime.h"

namespace qm::com {

class ClassFactory;

/// The DLL as a COM server: its instance, its coclasses and their class factories. A factory is
/// created at first use and released when the DLL is unloaded. One per DLL. GetClassObject is
/// thread-safe.
class ComServer final : private common::DllLifetimeLink {
 public:
  static ComServer& Instance() noexcept;
  ComServer(const ComServer&) = delete;
  ComServer& operator=(const ComServer&) = delete;

  /// Call once when the DLL is loaded. What `objects` points to must outlive this object.
  void Init(const ObjectMap& objects, HINSTANCE instance) noexcept;

  HINSTANCE DllInstance() const noexcept { return m_instance; }

  /// Queries the class factory of a coclass, created at first use, for `iid`. Fails with E_POINTER
  /// for a null `out`, CLASS_E_CLASSNOTAVAILABLE if the map lacks the class, E_OUTOFMEMORY, or
  /// E_NOINTERFACE.
  HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept;

 private:
  ComServer() noexcept;
  ~ComServer();

  /// Throws once per thread so that the C++ runtime allocates its exception state now. It would
  /// terminate the process if that allocation failed later.
  void PrepareThreadForExceptions() const noexcept;

  ClassFactory* GetOrCreateFactory(const ObjectMapEntry& entry) noexcept;
  void End() noexcept override;

  HINSTANCE m_instance = nullptr;
  ObjectMap m_objects{};
  const DWORD m_preparedThreads = ::TlsAlloc();  // freed with all slots, see ThreadSlots.cpp
  CRITICAL_SECTION m_factoryCreation;            // spin count 0; guards the factories
  ClassFactory* m_factories = nullptr;           // linked list; each holds one reference
};

}  // namespace qm::com
