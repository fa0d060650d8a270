#pragma once

#include "analysis/Elements.h"
#include "analysis/NotFound.h"
#include "analysis/SetObject.h"
#include "common/CollectionIndex.h"

namespace qm::analysis {

/// Implements a collection interface of idl/mergeset.idl.
template <class Collection, class Item>
class SetCollection : public SetObject<Collection> {
 public:
  void Init(std::shared_ptr<Elements> elements) noexcept { m_elements = std::move(elements); }

  STDMETHOD(get_Item)(VARIANT index, Item** item) override {
    return this->FillOut(item, [&]() -> HRESULT {
      const common::CollectionIndex wanted(index);
      const size_t position = wanted.IsKey() ? m_elements->Find(wanted.Key()) : wanted.Position();
      if (position >= m_elements->Count()) {
        RaiseNoElement(wanted);
      }
      *item = static_cast<Item*>(m_elements->At(position).Detach());
      return S_OK;
    });
  }

  STDMETHOD(get_Count)(long* count) override {
    return this->Answer(count, [&] { return static_cast<long>(m_elements->Count()); });
  }

  STDMETHOD(get__NewEnum)(IUnknown** enumerator) override {
    return this->Answer(enumerator, [&] { return MakeEnumerator(m_elements, 0); });
  }

 private:
  std::shared_ptr<Elements> m_elements;
};

/// Creates a collection of `count` items. `make` returns a new Item* for a position, `getKey` its
/// key as UTF-8. The caller owns the reference.
template <class Collection, class Item>
Collection* MakeCollection(size_t count, std::function<Item*(size_t)> make,
                           Elements::GetKey getKey) {
  return com::MakeObject<SetCollection<Collection, Item>>(
      std::make_shared<Elements>(count, std::move(make), std::move(getKey)));
}

}  // namespace qm::analysis
