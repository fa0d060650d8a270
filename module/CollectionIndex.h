#pragma once

#include <windows.h>

/// What a VARIANT refers to with VT_VARIANT | VT_BYREF, over several references too; null when one
/// of them, or that of the value itself, leads nowhere, or when they never end.
const VARIANT* FollowReferences(const VARIANT* value) noexcept;

/// The index of a collection element as a client gives it: a number from 1, a key, or nothing that
/// an element could have.
///
/// References are followed first. VT_I4, VT_I2, VT_UI4 and VT_UI2 are numbers; every other type, a
/// double or a boolean too, is a key: the text that VariantChangeType makes of it. What cannot be
/// converted is no index.
class CCollectionIndex {
 public:
  explicit CCollectionIndex(const VARIANT& index) noexcept;
  ~CCollectionIndex();
  CCollectionIndex(const CCollectionIndex&) = delete;
  CCollectionIndex& operator=(const CCollectionIndex&) = delete;

  bool IsNumber() const noexcept { return m_value.vt == VT_I4; }
  long Number() const noexcept { return m_value.lVal; }
  bool IsKey() const noexcept { return m_value.vt == VT_BSTR; }
  const wchar_t* Key() const noexcept { return m_value.bstrVal ? m_value.bstrVal : L""; }

 private:
  VARIANT m_value;
};
