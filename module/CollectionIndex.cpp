#include "module/CollectionIndex.h"

namespace {

/// Follows VT_BYREF | VT_VARIANT; null when a reference leads nowhere or never ends.
const VARIANT* Dereference(const VARIANT* value) noexcept {
  // No caller nests references; a chain this deep refers to itself.
  constexpr int maxDepth = 16;
  for (int depth = 0; value && depth < maxDepth; ++depth) {
    if (value->vt != (VT_VARIANT | VT_BYREF)) {
      const bool nullReference = (value->vt & VT_BYREF) != 0 && !value->byref;
      return nullReference ? nullptr : value;
    }
    value = value->pvarVal;
  }
  return nullptr;
}

VARTYPE IndexType(VARTYPE type) noexcept {
  switch (type & ~VT_BYREF) {
    case VT_I4:
    case VT_I2:
    case VT_UI4:
    case VT_UI2:
      return VT_I4;
    default:
      return VT_BSTR;
  }
}

}  // namespace

CCollectionIndex::CCollectionIndex(const VARIANT& index) noexcept {
  ::VariantInit(&m_value);
  const VARIANT* const source = Dereference(&index);
  // On failure the value stays empty, which is neither number nor key.
  if (source) {
    // The source is read only; the function's parameter just does not say so.
    ::VariantChangeType(&m_value, const_cast<VARIANT*>(source), 0, IndexType(source->vt));
  }
}

CCollectionIndex::~CCollectionIndex() { ::VariantClear(&m_value); }
