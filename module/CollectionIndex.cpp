#include "module/CollectionIndex.h"

namespace {

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

const VARIANT* FollowReferences(const VARIANT* value) noexcept {
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

CCollectionIndex::CCollectionIndex(const VARIANT& index) noexcept {
  ::VariantInit(&m_value);
  const VARIANT* const source = FollowReferences(&index);
  // On failure the value stays empty, which is neither number nor key.
  if (source) {
    // The source is read only; the function's parameter just does not say so.
    ::VariantChangeType(&m_value, const_cast<VARIANT*>(source), 0, IndexType(source->vt));
  }
}

CCollectionIndex::~CCollectionIndex() { ::VariantClear(&m_value); }
