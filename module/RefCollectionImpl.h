#pragma once

#include <algorithm>
#include <memory>

#include "com/frame/ComObject.h"
#include "com/frame/DispatchImpl.h"
#include "common/CollectionIndex.h"
#include "module/CollectionElements.h"
#include "module/CollectionEnum.h"

namespace qm::module {

/// Read-only automation collection of items with keys. Its creator fills it with Add before handing
/// it out.
///
/// Enumerators share the element list. They stay valid after the collection is gone, and removing
/// elements does not change what they enumerate.
template <class ItemInterface, class Collection>
class CRefCollectionImpl : public com::DispatchImpl<Collection>, public com::ComObjectRoot {
 public:
  using InterfaceMap = com::InterfaceMap<com::Via<Collection, Collection, IDispatch>>;

  STDMETHOD(get_Item)(VARIANT index, ItemInterface** item) override {
    return com::FillOut(GUID_NULL, item, [&] {
      const size_t position = Find(common::CollectionIndex(index));
      if (position == m_elements->Size()) {
        return E_INVALIDARG;
      }
      *item = common::ComPtr<ItemInterface>((*m_elements)[position].item).Detach();
      return S_OK;
    });
  }

  STDMETHOD(get_Count)(long* count) override {
    return com::Answer(GUID_NULL, count, [&] { return static_cast<long>(m_elements->Size()); });
  }

  STDMETHOD(get__NewEnum)(IUnknown** enumerator) override {
    return com::FillOut(GUID_NULL, enumerator, [&] {
      common::ComPtr<IEnumVARIANT> made;
      const HRESULT hr = this->get_Enumerator(made.Put());
      return FAILED(hr) ? hr
                        : made->QueryInterface(__uuidof(IEnumVARIANT),
                                               reinterpret_cast<void**>(enumerator));
    });
  }

  STDMETHOD(get_Enumerator)(IEnumVARIANT** enumerator) override {
    return CCollectionEnum<ItemInterface>::Create(m_elements, 0, enumerator);
  }

  // The server fills a collection once and never calls these two.

  /// Removes the element at `position`, counted from 0. Fails with E_INVALIDARG if there is no such
  /// element, or with E_OUTOFMEMORY.
  virtual HRESULT Remove(size_t position) {
    if (position >= m_elements->Size()) {
      return E_INVALIDARG;
    }
    return com::RunAtBoundary(GUID_NULL, [&] {
      auto elements = std::make_shared<Elements>(*m_elements);
      elements->Erase(position);
      Replace(std::move(elements));
      return S_OK;
    });
  }

  /// Empties the collection and releases its items from the last to the first. If enumerators share
  /// the element list, the last of them releases the items. E_OUTOFMEMORY is possible only in that
  /// case.
  virtual HRESULT RemoveAll() {
    if (m_elements.use_count() == 1) {
      m_keyIndex = KeyIndex<Elements>(*m_elements);
      m_elements->RemoveAll();
      return S_OK;
    }
    return com::RunAtBoundary(GUID_NULL, [&] {
      Replace(std::make_shared<Elements>());
      return S_OK;
    });
  }

  /// The element list releases its items, at once or when the last enumerator that shares it is
  /// gone.
  virtual ~CRefCollectionImpl() = default;

  /// Reserves memory for `count` elements. Throws std::bad_alloc.
  void Reserve(size_t count) { m_elements->Reserve(count); }

  /// Appends an item and adds a reference to it. Throws std::bad_alloc.
  void Add(const common::WideString& key, ItemInterface* item) { m_elements->Append(key, item); }

 protected:
  CRefCollectionImpl() : m_elements(std::make_shared<Elements>()), m_keyIndex(*m_elements) {}

 private:
  using Elements = CollectionElements<ItemInterface>;

  /// Returns the position of an element, or the size of the list.
  size_t Find(const common::CollectionIndex& index) {
    const size_t end = m_elements->Size();
    return index.IsKey() ? m_keyIndex.Find(index.Key().data()) : std::min(index.Position(), end);
  }

  void Replace(std::shared_ptr<Elements> elements) noexcept {
    m_keyIndex = KeyIndex<Elements>(*elements);
    m_elements = std::move(elements);
  }

  std::shared_ptr<Elements> m_elements;
  KeyIndex<Elements> m_keyIndex;
};

}  // namespace qm::module
