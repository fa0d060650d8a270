#pragma once

#include <windows.h>

#include <string_view>

/// The index of an element as a client gives it: a position (VT_I2, VT_I4, VT_UI2, VT_UI4, counted
/// from 1), or a name (the text that any other type can be changed to). References are followed.
/// Views the client's VARIANT.
class CIniIndex {
 public:
  /// Throws std::bad_alloc.
  explicit CIniIndex(const VARIANT& index);
  ~CIniIndex();
  CIniIndex(const CIniIndex&) = delete;
  CIniIndex& operator=(const CIniIndex&) = delete;

  bool IsName() const noexcept { return m_isName; }
  std::wstring_view Name() const noexcept { return m_name; }

  /// Counted from 0; that of no element when the index is of no use.
  size_t Position() const noexcept { return m_position; }

 private:
  void Take(const VARIANT& index);
  void TakeName(BSTR name) noexcept;

  bool m_isName = false;
  std::wstring_view m_name;
  size_t m_position = static_cast<size_t>(-1);
  VARIANT m_converted;
};
