#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "common/ComPtr.h"

namespace qm::analysis {

/// The elements of a collection. Their objects are created at each access. Used by one apartment.
class Elements {
 public:
  /// Makes the object at a position. The caller owns the reference.
  using Make = std::function<IDispatch*(size_t)>;
  /// Returns the key at a position, as UTF-8.
  using GetKey = std::function<std::string(size_t)>;

  /// Without `getKey`, elements have no keys.
  Elements(size_t count, Make make, GetKey getKey)
      : m_count(count), m_make(std::move(make)), m_getKey(std::move(getKey)) {}

  size_t Count() const noexcept { return m_count; }

  /// Makes the object at a position that exists.
  common::ComPtr<IDispatch> At(size_t position) const {
    return common::ComPtr<IDispatch>::Adopt(m_make(position));
  }

  /// Returns the position of the first element with a key, ignoring case; Count() if no element
  /// has it.
  size_t Find(std::wstring_view key);

 private:
  size_t m_count;
  Make m_make;
  GetKey m_getKey;
  /// Positions by folded key. Made at the first lookup, because most collections are only
  /// enumerated.
  std::optional<std::unordered_map<std::string, size_t>> m_positions;
};

/// Creates an IEnumVARIANT over `elements` that starts at `position`. The caller owns the
/// reference.
IUnknown* MakeEnumerator(const std::shared_ptr<const Elements>& elements, size_t position);

}  // namespace qm::analysis
