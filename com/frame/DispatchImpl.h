#pragma once

#include <windows.h>

#include <atomic>

#include "com/error/ErrorHandler.h"
#include "com/frame/DispatchTable.h"
#include "com/frame/TypeLibraries.h"
#include "common/DllLifetime.h"

namespace qm::com {

/// The type information of one interface, loaded at first use and kept until the DLL is unloaded.
/// Thread-safe. Objects are static.
class TypeInfoHolder final : private common::DllLifetimeLink {
 public:
  constexpr TypeInfoHolder(const IID& iid, TypeLibrary library) noexcept
      : m_iid(iid), m_library(library) {}

  HRESULT GetTypeInfo(ITypeInfo** out) noexcept;
  HRESULT GetIdsOfNames(REFIID iid, wchar_t** names, UINT count, DISPID* ids) noexcept;

  /// Calls a member of `object`, which implements the interface, as ITypeInfo::Invoke does, with
  /// two additions. A call with DISPATCH_METHOD alone also reads a property, because some script
  /// hosts read properties that way. A result of type VT_UNKNOWN becomes VT_DISPATCH if the object
  /// supports it. The getters that scripts call most bypass ITypeInfo.
  HRESULT Invoke(void* object, DISPID member, REFIID iid, WORD flags, DISPPARAMS* parameters,
                 VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept;

 private:
  HRESULT Load() noexcept;
  void End() noexcept override;

  const IID& m_iid;
  TypeLibrary m_library;
  SRWLOCK m_lock = SRWLOCK_INIT;  ///< guards storing what was loaded
  DispatchTable* m_table = nullptr;
  std::atomic<ITypeInfo*> m_info = nullptr;  ///< set after m_table
};

/// Implements IDispatch of a dual interface from the type information of `Described`, which is
/// `Interface` itself or an older version that it inherits.
template <class Interface, class Described = Interface,
          TypeLibrary library = TypeLibrary::Interfaces>
class DispatchImpl : public Interface {
 public:
  STDMETHOD(GetTypeInfoCount)(UINT* count) override {
    return Answer(GUID_NULL, count, [] { return 1; });
  }

  STDMETHOD(GetTypeInfo)(UINT index, LCID, ITypeInfo** info) override {
    return FillOut(GUID_NULL, info,
                   [&] { return index == 0 ? s_typeInfo.GetTypeInfo(info) : DISP_E_BADINDEX; });
  }

  STDMETHOD(GetIDsOfNames)
  (REFIID iid, wchar_t** names, UINT count, LCID, DISPID* ids) override {
    return s_typeInfo.GetIdsOfNames(iid, names, count, ids);
  }

  STDMETHOD(Invoke)
  (DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
   EXCEPINFO* exception, UINT* badArgument) override {
    return s_typeInfo.Invoke(static_cast<Described*>(this), member, iid, flags, parameters, result,
                             exception, badArgument);
  }

 private:
  static TypeInfoHolder s_typeInfo;
};

template <class Interface, class Described, TypeLibrary library>
TypeInfoHolder DispatchImpl<Interface, Described, library>::s_typeInfo(__uuidof(Described),
                                                                       library);

}  // namespace qm::com
