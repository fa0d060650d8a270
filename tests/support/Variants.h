#pragma once

#include <windows.h>

/// A VARIANT that is cleared at its end.
class CVariant : public VARIANT {
 public:
  CVariant() noexcept { ::VariantInit(this); }
  explicit CVariant(long number) noexcept : CVariant() {
    vt = VT_I4;
    lVal = number;
  }
  explicit CVariant(const wchar_t* text) noexcept : CVariant() {
    vt = VT_BSTR;
    bstrVal = ::SysAllocString(text);
  }
  CVariant(const CVariant&) = delete;
  CVariant& operator=(const CVariant&) = delete;
  ~CVariant() { ::VariantClear(this); }
};

/// A VARIANT of any type around the bits of a number, or a pointer that it does not own.
inline VARIANT Around(int type, LONGLONG number) noexcept {
  VARIANT variant{};
  variant.vt = static_cast<VARTYPE>(type);
  variant.llVal = number;
  return variant;
}
inline VARIANT Around(int type, const void* pointer) noexcept {
  return Around(type, static_cast<LONGLONG>(reinterpret_cast<ULONG_PTR>(pointer)));
}
