#include "catalog/QueryArgument.h"

#include <new>
#include <string>

#include "com/error/Raise.h"
#include "common/Bstr.h"
#include "common/CollectionIndex.h"
#include "common/ComPtr.h"

namespace qm::catalog {

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

/// A key and a version as the script passed them, not converted yet.
struct KeyAndVersion {
  UniqueVariant key;
  UniqueVariant version;
};

void RequireValidQuery(bool condition) {
  if (!condition) {
    com::Raise(com_exception(
        E_INVALIDARG, L"The query is neither a module key nor an array of key and version."));
  }
}

/// Requires the conversion of a value to have succeeded. Throws std::bad_alloc for E_OUTOFMEMORY,
/// which does not make the query invalid.
void RequireConversion(HRESULT hr) {
  if (hr == E_OUTOFMEMORY) {
    throw std::bad_alloc();
  }
  RequireValidQuery(SUCCEEDED(hr));
}

ModuleQuery ParseTexts(VARIANT* key, VARIANT* version) {
  for (VARIANT* const value : {key, version}) {
    RequireConversion(::VariantChangeType(value, value, 0, VT_BSTR));
  }
  return ParseModuleKey(key->bstrVal, version->bstrVal);
}

void GetElement(SAFEARRAY* array, LONG index, VARTYPE type, VARIANT* value) {
  if (type == VT_VARIANT) {
    com::RaiseIfFailed(::SafeArrayGetElement(array, &index, value));
  } else {
    RequireValidQuery(type == VT_BSTR);
    com::RaiseIfFailed(::SafeArrayGetElement(array, &index, &value->bstrVal));
    value->vt = VT_BSTR;
  }
}

ModuleQuery ParseSafeArray(SAFEARRAY* array) {
  LONG first = 0;
  LONG last = 0;
  VARTYPE type = VT_EMPTY;
  RequireValidQuery(array && ::SafeArrayGetDim(array) == 1 &&
                    SUCCEEDED(::SafeArrayGetLBound(array, 1, &first)) &&
                    SUCCEEDED(::SafeArrayGetUBound(array, 1, &last)) &&
                    SUCCEEDED(::SafeArrayGetVartype(array, &type)) && last - first == 1);
  KeyAndVersion pair;
  GetElement(array, first, type, pair.key.Get());
  GetElement(array, last, type, pair.version.Get());
  return ParseTexts(pair.key.Get(), pair.version.Get());
}

/// Reads a property of a script's object; false if that fails.
bool GetProperty(IDispatch& object, const wchar_t* name, VARIANT* value) {
  std::wstring text(name);
  wchar_t* names = text.data();
  DISPID id = 0;
  if (FAILED(object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id))) {
    return false;
  }
  DISPPARAMS none{};
  return SUCCEEDED(object.Invoke(id, IID_NULL, LOCALE_NEUTRAL, DISPATCH_PROPERTYGET, &none, value,
                                 nullptr, nullptr));
}

ModuleQuery ParseScriptArray(IDispatch* object) {
  UniqueVariant length;
  KeyAndVersion pair;
  RequireValidQuery(object && GetProperty(*object, L"length", length.Get()) &&
                    SUCCEEDED(::VariantChangeType(length.Get(), length.Get(), 0, VT_I4)) &&
                    length->lVal == 2 && GetProperty(*object, L"0", pair.key.Get()) &&
                    GetProperty(*object, L"1", pair.version.Get()));
  return ParseTexts(pair.key.Get(), pair.version.Get());
}

}  // namespace

ModuleQuery ParseQueryArgument(const VARIANT& argument) {
  UniqueVariant value;
  const VARIANT* const source = common::ResolveVariantReferences(&argument);
  RequireValidQuery(source != nullptr);
  RequireConversion(::VariantCopyInd(value.Get(), const_cast<VARIANT*>(source)));
  if (value->vt & VT_ARRAY) {
    return ParseSafeArray(value->parray);
  }
  if (value->vt == VT_DISPATCH) {
    return ParseScriptArray(value->pdispVal);
  }
  UniqueVariant noVersion;
  return ParseTexts(value.Get(), noVersion.Get());
}

void StoreCount(long count, VARIANT* out) noexcept {
  out = const_cast<VARIANT*>(common::ResolveVariantReferences(out));
  if (!out || (out->vt == VT_ERROR && out->scode == DISP_E_PARAMNOTFOUND)) {
    return;
  }
  if (out->vt == (VT_I4 | VT_BYREF)) {
    *out->plVal = count;
    return;
  }
  ::VariantClear(out);
  out->vt = VT_I4;
  out->lVal = count;
}

}  // namespace qm::catalog
