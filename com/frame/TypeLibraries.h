#pragma once

#include <windows.h>

#include <atomic>

#include "com/frame/ObjectMap.h"
#include "common/ModuleLifetime.h"
#include "common/WideString.h"

/// The library that describes an interface to IDispatch.
enum class TypeLibrary {
  Interfaces,  ///< the file beside the DLL, else the registered one
  Classes,     ///< the resource of the DLL
};

/// The type libraries of the DLL, each loaded at its first use and released when the DLL ends. Any
/// thread may ask: the system's type information belongs to no apartment.
class TypeLibraries final : private CModuleLifetimeLink {
 public:
  static TypeLibraries& Instance() noexcept;

  constexpr TypeLibraries() noexcept = default;

  /// Before the first use. What `objects` points to must outlive this.
  void Init(const ObjectMap& objects, HINSTANCE instance) noexcept;

  /// A library, with a reference for the caller. Fails with what the library's loading answers;
  /// TYPE_E_LIBNOTREGISTERED before Init.
  HRESULT Get(TypeLibrary library, ITypeLib** out) noexcept;

 private:
  void End() noexcept override;

  ObjectMap m_objects{};
  HINSTANCE m_instance = nullptr;
  SRWLOCK m_lock = SRWLOCK_INIT;  ///< taken to keep what was loaded
  bool m_isEnlisted = false;
  std::atomic<ITypeLib*> m_loaded[2] = {};
};

/// Full path of the interface library's file beside the DLL. Raises as ModulePath does.
CWideString InterfaceLibraryPath(const ObjectMap& objects, HINSTANCE instance);
