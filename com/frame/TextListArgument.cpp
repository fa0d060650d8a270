#include "com/frame/TextListArgument.h"

#include <new>
#include <string>
#include <utility>

#include "com/error/Raise.h"
#include "common/Bstr.h"
#include "common/CollectionIndex.h"

namespace qm::com {

namespace {

class UniqueVariant {
 public:
  UniqueVariant() noexcept { ::VariantInit(&m_value); }
  ~UniqueVariant() { ::VariantClear(&m_value); }
  UniqueVariant(const UniqueVariant&) = delete;
  UniqueVariant& operator=(const UniqueVariant&) = delete;

  VARIANT* Get() noexcept { return &m_value; }
  VARIANT* operator->() noexcept { return &m_value; }

 private:
  VARIANT m_value;
};

/// Reads one argument.
class Reader {
 public:
  explicit Reader(const wchar_t* complaint) noexcept : m_complaint(complaint) {}

  TextListArgument Read(const VARIANT& argument) {
    UniqueVariant value;
    const VARIANT* const source = common::ResolveVariantReferences(&argument);
    Require(source != nullptr);
    RequireSuccess(::VariantCopyInd(value.Get(), const_cast<VARIANT*>(source)));
    if (value->vt & VT_ARRAY) {
      ReadSafeArray(value->parray);
    } else if (value->vt == VT_DISPATCH) {
      ReadScriptArray(value->pdispVal);
    } else {
      m_list.isList = false;
      Add(value);
    }
    return std::move(m_list);
  }

 private:
  void Require(bool condition) const {
    if (!condition) {
      Raise(com_exception(E_INVALIDARG, m_complaint));
    }
  }

  /// Running out of memory does not make the argument invalid.
  void RequireSuccess(HRESULT hr) const {
    if (hr == E_OUTOFMEMORY) {
      throw std::bad_alloc();
    }
    Require(SUCCEEDED(hr));
  }

  void Add(UniqueVariant& value) {
    RequireSuccess(::VariantChangeType(value.Get(), value.Get(), 0, VT_BSTR));
    m_list.texts.emplace_back(common::ViewOf(value->bstrVal));
  }

  void ReadSafeArray(SAFEARRAY* array) {
    LONG first = 0;
    LONG last = 0;
    VARTYPE type = VT_EMPTY;
    Require(array && ::SafeArrayGetDim(array) == 1);
    RequireSuccess(::SafeArrayGetLBound(array, 1, &first));
    RequireSuccess(::SafeArrayGetUBound(array, 1, &last));
    RequireSuccess(::SafeArrayGetVartype(array, &type));
    Require(type == VT_VARIANT || type == VT_BSTR);
    for (LONG index = first; index <= last; ++index) {
      UniqueVariant element;
      if (type == VT_VARIANT) {
        RequireSuccess(::SafeArrayGetElement(array, &index, element.Get()));
      } else {
        RequireSuccess(::SafeArrayGetElement(array, &index, &element->bstrVal));
        element->vt = VT_BSTR;
      }
      Add(element);
    }
  }

  void ReadProperty(IDispatch& object, std::wstring name, UniqueVariant& value) {
    wchar_t* names = name.data();
    DISPID id = 0;
    RequireSuccess(object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id));
    DISPPARAMS none{};
    RequireSuccess(object.Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none,
                                 value.Get(), nullptr, nullptr));
  }

  void ReadScriptArray(IDispatch* object) {
    Require(object != nullptr);
    UniqueVariant length;
    ReadProperty(*object, L"length", length);
    RequireSuccess(::VariantChangeType(length.Get(), length.Get(), 0, VT_I4));
    for (LONG index = 0; index < length->lVal; ++index) {
      UniqueVariant element;
      ReadProperty(*object, std::to_wstring(index), element);
      Add(element);
    }
  }

  const wchar_t* m_complaint;
  TextListArgument m_list{true, {}};
};

}  // namespace

TextListArgument ParseTextList(const VARIANT& argument, const wchar_t* complaint) {
  return Reader(complaint).Read(argument);
}

}  // namespace qm::com
