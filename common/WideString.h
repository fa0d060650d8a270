#pragma once

#include <string>
#include <string_view>
#include <utility>

/// The text type of the whole server: UTF-16, any length, embedded zeros allowed.
///
/// Constructing, copying, joining and formatting leave the thread's last-error code as it was, so
/// that a message can be built between a failed call and GetLastError(). Every operation that makes
/// text throws std::bad_alloc when memory is short. Comparisons are ordinal.
class CWideString {
 public:
  CWideString() noexcept = default;
  /// Text up to its terminating zero; null counts as empty.
  CWideString(const wchar_t* text);
  CWideString(const wchar_t* text, size_t length);
  CWideString(std::wstring_view text);
  CWideString(std::wstring&& text) noexcept : m_text(std::move(text)) {}
  CWideString(const CWideString& other);
  CWideString(CWideString&& other) noexcept = default;
  CWideString& operator=(const CWideString& other);
  CWideString& operator=(CWideString&& other) noexcept = default;
  ~CWideString() = default;

  /// Text of a printf-style format in Microsoft's dialect, where "%s" takes wide text.
  static CWideString Format(const wchar_t* format, ...);

  const wchar_t* c_str() const noexcept { return m_text.c_str(); }
  size_t length() const noexcept { return m_text.length(); }
  bool empty() const noexcept { return m_text.empty(); }
  void clear() noexcept { m_text.clear(); }
  operator std::wstring_view() const noexcept { return m_text; }

  CWideString& operator+=(std::wstring_view tail);

 private:
  std::wstring m_text;
};

CWideString operator+(const CWideString& head, std::wstring_view tail);

inline bool operator==(const CWideString& a, std::wstring_view b) noexcept {
  return std::wstring_view(a) == b;
}
inline bool operator!=(const CWideString& a, std::wstring_view b) noexcept {
  return std::wstring_view(a) != b;
}
inline bool operator<(const CWideString& a, const CWideString& b) noexcept {
  return std::wstring_view(a) < std::wstring_view(b);
}
