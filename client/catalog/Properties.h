#pragma once

#include <optional>
#include <string>

#include "client/catalog/ServerFailure.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/NullInteger.h"
#include "text/Utf.h"

// Properties of automation objects as plain values, and calls of their methods. Everything here
// throws ServerFailure if a call fails.

template <class Interface>
std::string Text(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(BSTR*)) {
  CUniqueBstr value;
  Check((object.*property)(value.Put()));
  return qm::text::ToUtf8(ViewOf(value.Get()));
}

template <class Interface>
long Number(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(long*)) {
  long value = 0;
  Check((object.*property)(&value));
  return value;
}

/// A number from a module's table; no value for a null cell.
template <class Interface>
std::optional<long> Cell(Interface& object,
                         HRESULT (STDMETHODCALLTYPE Interface::*property)(long*)) {
  const long value = Number(object, property);
  return value == kNullInteger ? std::nullopt : std::optional<long>(value);
}

template <class Interface>
bool Flag(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(VARIANT_BOOL*)) {
  VARIANT_BOOL value = VARIANT_FALSE;
  Check((object.*property)(&value));
  return value != VARIANT_FALSE;
}

template <class Interface, class Object>
CComPtr<Object> Get(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(Object**)) {
  CComPtr<Object> value;
  Check((object.*property)(value.Put()));
  return value;
}

/// Calls `use` with each element of a collection, as an `Item&`.
template <class Item, class Collection, class Use>
void ForEach(Collection& collection, Use use) {
  const long count = Number(collection, &Collection::get_Count);
  VARIANT index;
  index.vt = VT_I4;
  for (index.lVal = 1; index.lVal <= count; ++index.lVal) {
    CComPtr<Item> item;
    Check(collection.get_Item(index, item.Put()));
    use(*item);
  }
}

/// Creates an object. The text of a failure begins with `what`, such as the name of the class's
/// DLL.
template <class Interface>
CComPtr<Interface> Create(REFCLSID clsid, const char* what) {
  CComPtr<Interface> object;
  const HRESULT hr = ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                        reinterpret_cast<void**>(object.Put()));
  if (FAILED(hr)) {
    throw ServerFailure(hr, what + std::string(": ") + ServerFailure::Capture(hr).what());
  }
  return object;
}

/// A text argument of a call. Throws ServerFailure if memory runs out.
inline CUniqueBstr Argument(std::wstring_view text) {
  CUniqueBstr value(AllocBstr(text));
  Check(value ? S_OK : E_OUTOFMEMORY);
  return value;
}
