#pragma once

#include <algorithm>
#include <memory>

#include "com/frame/ComObject.h"
#include "module/CollectionElements.h"

namespace qm::module {

/// Enumerator of a collection. It shares the collection's element list instead of holding a
/// reference, so that it stays valid after the collection is gone.
template <class ItemInterface>
class CCollectionEnum : public IEnumVARIANT, public com::ComObjectRoot {
 public:
  using Elements = CollectionElements<ItemInterface>;
  using InterfaceMap = com::InterfaceMap<com::Via<IEnumVARIANT, IEnumVARIANT>>;

  /// Creates an enumerator over all of `elements` with the cursor at `cursor`. Fails with E_POINTER
  /// or E_OUTOFMEMORY.
  static HRESULT Create(const std::shared_ptr<const Elements>& elements, size_t cursor,
                        IEnumVARIANT** out) noexcept {
    return com::FillOut(GUID_NULL, out, [&] {
      const auto enumerator = com::ComObject<CCollectionEnum>::Create();
      enumerator->m_elements = elements;
      enumerator->m_last = elements->Size();
      enumerator->m_cursor = cursor;
      return enumerator.QueryInterface(out);
    });
  }

  /// Copies elements to `values` with VariantCopy, which releases what the values held: they must
  /// be initialised. Stops at the first copy that fails.
  STDMETHOD(Next)(ULONG count, VARIANT* values, ULONG* fetched) override {
    return com::RunAtBoundary(GUID_NULL, [&] {
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

  /// Returns S_OK if the cursor is then at the end, otherwise S_FALSE. This is the reverse of the
  /// usual convention, and clients rely on it.
  STDMETHOD(Skip)(ULONG count) override {
    m_cursor += std::min<size_t>(count, m_last - m_cursor);
    return m_cursor == m_last ? S_OK : S_FALSE;
  }

  STDMETHOD(Reset)() override {
    m_cursor = m_first;
    return S_OK;
  }

  STDMETHOD(Clone)(IEnumVARIANT** enumerator) override {
    return Create(m_elements, m_cursor, enumerator);
  }

  virtual ~CCollectionEnum() = default;

 private:
  /// Copies the element at the cursor to `value` as VT_DISPATCH and releases what `value` held.
  /// Returns false if VariantCopy fails.
  bool CopyCurrent(VARIANT& value) const noexcept {
    VARIANT element;
    ::VariantInit(&element);
    element.vt = VT_DISPATCH;
    element.pdispVal = common::ComPtr<ItemInterface>((*m_elements)[m_cursor].item).Detach();
    const HRESULT hr = ::VariantCopy(&value, &element);
    ::VariantClear(&element);
    return SUCCEEDED(hr);
  }

  std::shared_ptr<const Elements> m_elements;
  size_t m_first = 0;
  size_t m_last = 0;
  size_t m_cursor = 0;
};

}  // namespace qm::module
