#pragma once

#include <algorithm>
#include <memory>

#include "com/frame/ComObject.h"
#include "module/CollectionElements.h"

/// Enumerator of a collection. It holds no reference on the collection but shares its element list,
/// so that it stays valid when the collection goes.
template <class ItemInterface>
class CCollectionEnum : public IEnumVARIANT, public CComObjectRoot {
 public:
  using Elements = CCollectionElements<ItemInterface>;
  using InterfaceMap = CInterfaceMap<Via<IEnumVARIANT, IEnumVARIANT>>;

  /// A new enumerator over all of `elements`, standing at `cursor`. E_POINTER, E_OUTOFMEMORY.
  static HRESULT Make(const std::shared_ptr<const Elements>& elements, size_t cursor,
                      IEnumVARIANT** out) noexcept {
    return FillOut(GUID_NULL, out, [&] {
      const auto enumerator = CComObject<CCollectionEnum>::Create();
      enumerator->m_elements = elements;
      enumerator->m_last = elements->Size();
      enumerator->m_cursor = cursor;
      return enumerator.QueryInterface(out);
    });
  }

  /// Copies over the first values of the array with VariantCopy: what they held is released, so
  /// they must be initialised. One whose copy fails ends the call.
  STDMETHOD(Next)(ULONG count, VARIANT* values, ULONG* fetched) override {
    return RunAtBoundary(GUID_NULL, [&] {
      if (!values || (!fetched && count != 1)) {
        return E_POINTER;
      }
      if (fetched) {
        *fetched = 0;
      }
      ULONG copied = 0;
      while (copied < count && m_cursor < m_last && CopyCurrent(values[copied])) {
        ++m_cursor;
        ++copied;
      }
      if (fetched) {
        *fetched = copied;
      }
      return copied == count ? S_OK : S_FALSE;
    });
  }

  /// S_OK when the cursor stands at the end afterwards, S_FALSE when it does not: the reverse of
  /// the usual sense, on which clients rely.
  STDMETHOD(Skip)(ULONG count) override {
    m_cursor += std::min<size_t>(count, m_last - m_cursor);
    return m_cursor == m_last ? S_OK : S_FALSE;
  }

  STDMETHOD(Reset)() override {
    m_cursor = m_first;
    return S_OK;
  }

  STDMETHOD(Clone)(IEnumVARIANT** enumerator) override {
    return Make(m_elements, m_cursor, enumerator);
  }

  virtual ~CCollectionEnum() = default;

 private:
  /// Copies the element under the cursor, as VT_DISPATCH, over `value`, whose content is released.
  bool CopyCurrent(VARIANT& value) const noexcept {
    VARIANT element;
    ::VariantInit(&element);
    element.vt = VT_DISPATCH;
    element.pdispVal = CComPtr<ItemInterface>((*m_elements)[m_cursor].item).Detach();
    const HRESULT hr = ::VariantCopy(&value, &element);
    ::VariantClear(&element);
    return SUCCEEDED(hr);
  }

  std::shared_ptr<const Elements> m_elements;
  size_t m_first = 0;
  size_t m_last = 0;
  size_t m_cursor = 0;
};
