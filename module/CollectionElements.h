#pragma once

#include <cwchar>
#include <set>
#include <utility>
#include <vector>

#include "common/ComPtr.h"
#include "common/WideString.h"

/// The elements of a collection in their order. Releases its items from the last to the first.
template <class ItemInterface>
class CCollectionElements {
 public:
  struct Element {
    CWideString key;
    CComPtr<ItemInterface> item;
  };

  CCollectionElements() = default;
  CCollectionElements(const CCollectionElements&) = default;
  CCollectionElements& operator=(const CCollectionElements&) = delete;
  ~CCollectionElements() {
    while (!m_elements.empty()) {
      m_elements.pop_back();
    }
  }

  size_t Size() const noexcept { return m_elements.size(); }
  const Element& operator[](size_t position) const noexcept { return m_elements[position]; }

  void Reserve(size_t count) { m_elements.reserve(count); }
  void Append(const CWideString& key, ItemInterface* item) { m_elements.push_back({key, item}); }
  void Erase(size_t position) {
    m_elements.erase(m_elements.begin() + static_cast<std::ptrdiff_t>(position));
  }

 private:
  std::vector<Element> m_elements;
};

/// Orders positions of an element list by the elements' keys, without regard to case, and finds
/// them by a key's text. Refers to the list, which must outlive it.
template <class Elements>
class CKeyOrder {
 public:
  using is_transparent = void;

  explicit CKeyOrder(const Elements& elements) noexcept : m_elements(&elements) {}

  template <class Left, class Right>
  bool operator()(const Left& left, const Right& right) const noexcept {
    return ::_wcsicmp(KeyOf(left), KeyOf(right)) < 0;
  }

 private:
  const wchar_t* KeyOf(size_t position) const noexcept {
    return (*m_elements)[position].key.c_str();
  }
  const wchar_t* KeyOf(const wchar_t* key) const noexcept { return key; }

  const Elements* m_elements;
};

/// The positions of an element list by key; of keys that are equal without regard to case, the
/// first.
template <class Elements>
using CKeyIndex = std::set<size_t, CKeyOrder<Elements>>;
