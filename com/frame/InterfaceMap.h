#pragma once

#include <windows.h>

namespace qm::com {

/// One branch of an object's base classes: QueryInterface returns the Branch pointer for each of
/// Interfaces.
template <class Branch, class... Interfaces>
struct Via {
  static_assert(sizeof...(Interfaces) > 0);

  template <class Object>
  static IUnknown* Pointer(Object* object) noexcept {
    return static_cast<Branch*>(object);
  }

  static bool Answers(REFIID iid) noexcept { return (... || (iid == __uuidof(Interfaces))); }
};

/// Implements QueryInterface by a list of Via. The pointer of the first branch is also the object's
/// identity (IUnknown). A class declares its map as a member type `InterfaceMap`.
template <class Primary, class... Others>
struct InterfaceMap {
  template <class Object>
  static HRESULT Query(Object* object, REFIID iid, void** out) noexcept {
    if (!out) {
      return E_POINTER;
    }
    IUnknown* found = nullptr;
    if (iid == __uuidof(IUnknown) || Primary::Answers(iid)) {
      found = Primary::Pointer(object);
    } else {
      (void)(... || (Others::Answers(iid) && (found = Others::Pointer(object))));
    }
    *out = found;
    if (!found) {
      return E_NOINTERFACE;
    }
    found->AddRef();
    return S_OK;
  }
};

}  // namespace qm::com
