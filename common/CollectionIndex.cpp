#include "common/CollectionIndex.h"

#include "common/Bstr.h"

namespace qm::common {

namespace {

size_t ToPosition(long number) noexcept { return static_cast<size_t>(number) - 1; }

}  // namespace

const VARIANT* ResolveVariantReferences(const VARIANT* value) noexcept {
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

CollectionIndex::CollectionIndex(const VARIANT& index) {
  ::VariantInit(&m_converted);
  if (const VARIANT* const value = ResolveVariantReferences(&index)) {
    Parse(*value);
  }
}

CollectionIndex::~CollectionIndex() { ::VariantClear(&m_converted); }

void CollectionIndex::Parse(const VARIANT& index) {
  const bool reference = (index.vt & VT_BYREF) != 0;
  switch (index.vt & ~VT_BYREF) {
    case VT_BSTR:
      SetKey(reference ? *index.pbstrVal : index.bstrVal);
      break;
    case VT_I2:
      m_position = ToPosition(reference ? *index.piVal : index.iVal);
      break;
    case VT_UI2:
      m_position = ToPosition(reference ? *index.puiVal : index.uiVal);
      break;
    case VT_I4:
    case VT_UI4:
      m_position = ToPosition(reference ? *index.plVal : index.lVal);
      break;
    default: {
      // VariantChangeType only reads its source, although the parameter is not const.
      if (SUCCEEDED(::VariantChangeType(&m_converted, const_cast<VARIANT*>(&index), 0, VT_BSTR))) {
        SetKey(m_converted.bstrVal);
      }
    }
  }
}

void CollectionIndex::SetKey(BSTR text) noexcept {
  m_isText = true;
  m_text = text ? ViewOf(text) : L"";
}

}  // namespace qm::common
