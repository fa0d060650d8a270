#pragma once

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "common/ComPtr.h"
#include "common/IgnoringCase.h"
#include "common/WideString.h"

namespace qm::module {

/// The elements of a collection, in order. Items are always released from the last to the first.
template <class ItemInterface>
class CollectionElements {
 public:
  struct Element {
    common::WideString key;
    common::ComPtr<ItemInterface> item;
  };

  CollectionElements() = default;
  CollectionElements(const CollectionElements&) = default;
  CollectionElements& operator=(const CollectionElements&) = delete;
  ~CollectionElements() { RemoveAll(); }

  void RemoveAll() noexcept {
    while (!m_elements.empty()) {
      m_elements.pop_back();
    }
  }

  size_t Size() const noexcept { return m_elements.size(); }
  const Element& operator[](size_t position) const noexcept { return m_elements[position]; }

  void Reserve(size_t count) { m_elements.reserve(count); }
  void Append(const common::WideString& key, ItemInterface* item) {
    m_elements.push_back({key, item});
  }
  void Erase(size_t position) {
    m_elements.erase(m_elements.begin() + static_cast<std::ptrdiff_t>(position));
  }

 private:
  std::vector<Element> m_elements;
};

/// An index of an element list by key, ignoring case: positions sorted by key, then by position. It
/// is built at the first lookup, since most lists are only enumerated. The list must outlive it.
template <class Elements>
class KeyIndex {
 public:
  explicit KeyIndex(const Elements& elements) noexcept : m_elements(&elements) {}

  /// Returns the position of the first element with this key, or the size of the list. Throws
  /// std::bad_alloc.
  size_t Find(const wchar_t* key) {
    AddNewElements();
    const auto found = LowerBound(key);
    return found == m_positions.end() || Compare(*found, key) != 0 ? m_elements->Size() : *found;
  }

 private:
  using Positions = std::vector<size_t>;

  const wchar_t* KeyAt(size_t position) const noexcept {
    return (*m_elements)[position].key.c_str();
  }
  int Compare(size_t position, const wchar_t* key) const noexcept {
    return common::CompareIgnoringCase(KeyAt(position), key);
  }

  Positions::const_iterator LowerBound(const wchar_t* key) const noexcept {
    return std::lower_bound(
        m_positions.begin(), m_positions.end(), key,
        [&](size_t position, const wchar_t* wanted) { return Compare(position, wanted) < 0; });
  }

  /// Adds the elements that were appended since the last call. Merging keeps this cheap when
  /// lookups and appends alternate, as when a list is filled with what it lacks.
  void AddNewElements() {
    const size_t known = m_positions.size();
    const size_t count = m_elements->Size();
    if (known == count) {
      return;
    }
    m_positions.resize(count);
    const auto added = m_positions.begin() + static_cast<std::ptrdiff_t>(known);
    std::iota(added, m_positions.end(), known);
    const auto isBefore = [&](size_t a, size_t b) {
      const int order = Compare(a, KeyAt(b));
      return order == 0 ? a < b : order < 0;
    };
    std::sort(added, m_positions.end(), isBefore);
    std::inplace_merge(m_positions.begin(), added, m_positions.end(), isBefore);
  }

  const Elements* m_elements;
  Positions m_positions;
};

}  // namespace qm::module
