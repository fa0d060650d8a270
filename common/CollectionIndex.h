#pragma once

#include <windows.h>

#include <string_view>

/// What a VARIANT refers to with VT_VARIANT | VT_BYREF, over several references too; null when one
/// of them, or that of the value itself, leads nowhere, or when they never end.
const VARIANT* FollowReferences(const VARIANT* value) noexcept;

/// The index of a collection element as a client gives it: a position, a text, or nothing that an
/// element could have.
///
/// References are followed first. VT_I2, VT_I4, VT_UI2 and VT_UI4 are positions, counted from 1;
/// every other type, a double or a boolean too, is the text that VariantChangeType makes of it.
/// What cannot be converted is no index. Views the client's VARIANT.
class CCollectionIndex {
 public:
  explicit CCollectionIndex(const VARIANT& index);
  ~CCollectionIndex();
  CCollectionIndex(const CCollectionIndex&) = delete;
  CCollectionIndex& operator=(const CCollectionIndex&) = delete;

  bool IsText() const noexcept { return m_isText; }

  /// The key, null-terminated. Valid only if IsText().
  std::wstring_view Text() const noexcept { return m_text; }

  /// The position, counted from 0; SIZE_MAX if the index is not a number.
  size_t Position() const noexcept { return m_position; }

 private:
  void Take(const VARIANT& index);
  void TakeText(BSTR text) noexcept;

  bool m_isText = false;
  std::wstring_view m_text;
  size_t m_position = static_cast<size_t>(-1);
  VARIANT m_converted;
};
