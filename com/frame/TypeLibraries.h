#pragma once

#include <windows.h>

#include <atomic>

#include "com/frame/ObjectMap.h"
#include "common/DllLifetime.h"
#include "common/WideString.h"

namespace qm::com {

/// The type library that describes an interface to IDispatch.
enum class TypeLibrary {
  Interfaces,  ///< the file beside the DLL, or else the registered one
  Classes,     ///< the resource of the DLL
};

/// The type libraries of the DLL, each loaded at first use and released when the DLL is unloaded.
/// Thread-safe: the system's type information belongs to no apartment.
class TypeLibraries final : private common::DllLifetimeLink {
 public:
  static TypeLibraries& Instance() noexcept;

  constexpr TypeLibraries() noexcept = default;

  /// Call before the first use. What `objects` points to must outlive this object.
  void Init(const ObjectMap& objects, HINSTANCE instance) noexcept;

  /// Returns a library with a reference for the caller. Fails with the HRESULT of loading the
  /// library, or with TYPE_E_LIBNOTREGISTERED before Init.
  HRESULT Get(TypeLibrary library, ITypeLib** out) noexcept;

 private:
  void End() noexcept override;

  ObjectMap m_objects{};
  HINSTANCE m_instance = nullptr;
  SRWLOCK m_lock = SRWLOCK_INIT;  ///< guards storing what was loaded
  bool m_isEnlisted = false;
  std::atomic<ITypeLib*> m_loaded[2] = {};  ///< by TypeLibrary; each holds one reference
};

/// Returns the full path of the interface library's file beside the DLL. Raises as DllPath does.
common::WideString GetInterfaceLibraryPath(const ObjectMap& objects, HINSTANCE instance);

}  // namespace qm::com
