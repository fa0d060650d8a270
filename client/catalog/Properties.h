#pragma once

#include <algorithm>
#include <climits>
#include <optional>
#include <string>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/ServerFailure.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/NullInteger.h"
#include "text/Utf.h"

namespace mmcat {

// Properties of automation objects as plain values, and calls of their methods. Everything here
// throws ServerFailure if a call fails.

template <class Interface>
std::string ReadText(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(BSTR*)) {
  qm::common::UniqueBstr value;
  ThrowIfFailed((object.*property)(value.Put()));
  return qm::text::ToUtf8(qm::common::ViewOf(value.Get()));
}

/// The full path of a file or folder, as the user spells it.
template <class Interface>
std::string ReadPath(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(BSTR*)) {
  return SpellPath(ReadText(object, property));
}

/// A display name, which is the path of the object if it has no other name.
template <class Interface>
std::string ReadDisplayName(Interface& object,
                            HRESULT (STDMETHODCALLTYPE Interface::*path)(BSTR*)) {
  const std::string name = ReadText(object, &Interface::get_DisplayName);
  return name == ReadText(object, path) ? SpellPath(name) : name;
}

template <class Interface>
long ReadNumber(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(long*)) {
  long value = 0;
  ThrowIfFailed((object.*property)(&value));
  return value;
}

/// A number from a module's table; no value for a null cell.
template <class Interface>
std::optional<long> ReadOptionalNumber(Interface& object,
                                       HRESULT (STDMETHODCALLTYPE Interface::*property)(long*)) {
  const long value = ReadNumber(object, property);
  return value == qm::common::kNullInteger ? std::nullopt : std::optional<long>(value);
}

template <class Interface>
bool ReadFlag(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(VARIANT_BOOL*)) {
  VARIANT_BOOL value = VARIANT_FALSE;
  ThrowIfFailed((object.*property)(&value));
  return value != VARIANT_FALSE;
}

template <class Interface, class Object>
qm::common::ComPtr<Object> ReadObject(Interface& object,
                                      HRESULT (STDMETHODCALLTYPE Interface::*property)(Object**)) {
  qm::common::ComPtr<Object> value;
  ThrowIfFailed((object.*property)(value.Put()));
  return value;
}

/// Calls `use` with each element of a collection, or the first `most`, as an `Item&`.
template <class Item, class Collection, class Use>
void ForEachItem(Collection& collection, Use use, long most = LONG_MAX) {
  const long count = std::min(ReadNumber(collection, &Collection::get_Count), most);
  VARIANT index;
  index.vt = VT_I4;
  for (index.lVal = 1; index.lVal <= count; ++index.lVal) {
    qm::common::ComPtr<Item> item;
    ThrowIfFailed(collection.get_Item(index, item.Put()));
    use(*item);
  }
}

/// Creates an object. Throws ServerUnavailable, with a text that begins with `what`, such as the
/// name of the class's DLL.
template <class Interface>
qm::common::ComPtr<Interface> CreateObject(REFCLSID clsid, const char* what) {
  qm::common::ComPtr<Interface> object;
  const HRESULT hr = ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                        reinterpret_cast<void**>(object.Put()));
  if (FAILED(hr)) {
    throw ServerUnavailable(hr, what + std::string(": ") + ServerFailure::Capture(hr).what());
  }
  return object;
}

/// A text argument of a call. Throws ServerFailure if memory runs out.
inline qm::common::UniqueBstr MakeArgument(std::wstring_view text) {
  qm::common::UniqueBstr value(qm::common::TryAllocateBstr(text));
  ThrowIfFailed(value ? S_OK : E_OUTOFMEMORY);
  return value;
}

/// The same for UTF-8 text.
inline qm::common::UniqueBstr MakeArgument(const std::string& text) {
  return MakeArgument(std::wstring_view(qm::text::ToWide(text)));
}

}  // namespace mmcat
