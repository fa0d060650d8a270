#pragma once

#include <windows.h>

namespace qm::tests {

/// A VARIANT that is cleared at its end.
class Variant : public VARIANT {
 public:
  Variant() noexcept { ::VariantInit(this); }
  explicit Variant(long number) noexcept : Variant() {
    vt = VT_I4;
    lVal = number;
  }
  explicit Variant(const wchar_t* text) noexcept : Variant() {
    vt = VT_BSTR;
    bstrVal = ::SysAllocString(text);
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { ::VariantClear(this); }
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

}  // namespace qm::tests
