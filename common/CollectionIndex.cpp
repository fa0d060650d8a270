#include "common/CollectionIndex.h"

#include "common/Bstr.h"

namespace {

size_t FromNumber(long number) noexcept { return static_cast<size_t>(number) - 1; }

}  // namespace

const VARIANT* FollowReferences(const VARIANT* value) noexcept {
  // Callers do not nest references. A chain this deep refers to itself.
  constexpr int maxDepth = 16;
  for (int depth = 0; value && depth < maxDepth; ++depth) {
    if (value->vt != (VT_VARIANT | VT_BYREF)) {
      const bool leadsNowhere = (value->vt & VT_BYREF) != 0 && !value->byref;
      return leadsNowhere ? nullptr : value;
    }
    value = value->pvarVal;
  }
  return nullptr;
}

CCollectionIndex::CCollectionIndex(const VARIANT& index) {
  ::VariantInit(&m_converted);
  if (const VARIANT* const value = FollowReferences(&index)) {
    Take(*value);
  }
}

CCollectionIndex::~CCollectionIndex() { ::VariantClear(&m_converted); }

void CCollectionIndex::Take(const VARIANT& index) {
  const bool reference = (index.vt & VT_BYREF) != 0;
  switch (index.vt & ~VT_BYREF) {
    case VT_BSTR:
      TakeText(reference ? *index.pbstrVal : index.bstrVal);
      break;
    case VT_I2:
      m_position = FromNumber(reference ? *index.piVal : index.iVal);
      break;
    case VT_UI2:
      m_position = FromNumber(reference ? *index.puiVal : index.uiVal);
      break;
    case VT_I4:
    case VT_UI4:
      m_position = FromNumber(reference ? *index.plVal : index.lVal);
      break;
    default: {
      // VariantChangeType only reads its source, although the parameter is not const.
      if (SUCCEEDED(::VariantChangeType(&m_converted, const_cast<VARIANT*>(&index), 0, VT_BSTR))) {
        TakeText(m_converted.bstrVal);
      }
    }
  }
}

void CCollectionIndex::TakeText(BSTR text) noexcept {
  m_isText = true;
  m_text = text ? ViewOf(text) : L"";
}
