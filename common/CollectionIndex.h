#pragma once

#include <windows.h>

#include <string_view>

namespace qm::common {

/// Follows VT_VARIANT | VT_BYREF, through several levels if there are any, to the VARIANT referred
/// to. Returns null if a pointer on the way or the VT_BYREF pointer of the result is null, or if
/// the chain does not end.
const VARIANT* ResolveVariantReferences(const VARIANT* value) noexcept;

/// The index of a collection element as a client passes it: a position, a key, or neither.
///
/// References are followed first. VT_I2, VT_I4, VT_UI2 and VT_UI4 are positions, counted from 1.
/// VariantChangeType converts any other type, doubles and booleans included, to a key. A value that
/// cannot be converted is neither. Refers to the client's VARIANT, which must outlive the object.
class CollectionIndex {
 public:
  explicit CollectionIndex(const VARIANT& index);
  ~CollectionIndex();
  CollectionIndex(const CollectionIndex&) = delete;
  CollectionIndex& operator=(const CollectionIndex&) = delete;

  bool IsKey() const noexcept { return m_isText; }

  /// The key, null-terminated. Valid only if IsKey().
  std::wstring_view Key() const noexcept { return m_text; }

  /// The position, counted from 0; SIZE_MAX if the index is not a number.
  size_t Position() const noexcept { return m_position; }

 private:
  void Parse(const VARIANT& index);
  void SetKey(BSTR text) noexcept;

  bool m_isText = false;
  std::wstring_view m_text;
  size_t m_position = static_cast<size_t>(-1);
  VARIANT m_converted;
};

}  // namespace qm::common
