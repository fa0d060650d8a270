#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <utility>

namespace qm::common {

/// The text type of the whole server: UTF-16 of any length, with embedded zeros allowed.
///
/// The characters are immutable and shared by all copies, across threads: copying allocates nothing
/// and cannot fail. Creating text throws std::bad_alloc if memory is short. It preserves the
/// thread's last-error code, so a message can be built between a failed call and GetLastError().
/// Comparisons are ordinal.
class WideString {
 public:
  WideString() noexcept = default;
  /// Copies null-terminated text. Null is empty text.
  WideString(const wchar_t* text);
  WideString(const wchar_t* text, size_t length) : WideString(std::wstring_view(text, length)) {}
  WideString(std::wstring_view text);
  WideString(const std::wstring& text) : WideString(std::wstring_view(text)) {}
  WideString(const WideString& other) noexcept : m_characters(other.m_characters) {
    if (m_characters) {
      m_characters->users.fetch_add(1, std::memory_order_relaxed);
    }
  }
  WideString(WideString&& other) noexcept
      : m_characters(std::exchange(other.m_characters, nullptr)) {}
  WideString& operator=(const WideString& other) noexcept { return *this = WideString(other); }
  WideString& operator=(WideString&& other) noexcept {
    std::swap(m_characters, other.m_characters);
    return *this;
  }
  ~WideString() { clear(); }

  /// Creates text from what `write` writes into a buffer of `size` characters. `write` returns the
  /// number of characters written.
  template <class Write>
  static WideString Build(size_t size, Write write);

  /// Formats as printf does, in Microsoft's dialect, where "%s" takes wide text.
  static WideString Format(const wchar_t* format, ...);

  /// Null-terminated. Valid as long as any copy of the text lives.
  const wchar_t* c_str() const noexcept { return m_characters ? m_characters->Begin() : L""; }
  size_t length() const noexcept { return m_characters ? m_characters->length : 0; }
  bool empty() const noexcept { return length() == 0; }
  void clear() noexcept;
  operator std::wstring_view() const noexcept { return {c_str(), length()}; }

  WideString& operator+=(std::wstring_view tail);

 private:
  /// Header of a memory block. The characters follow it.
  struct Characters {
    wchar_t* Begin() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }

    std::atomic<unsigned> users;
    size_t length;
  };

  static Characters* Allocate(size_t size);

  Characters* m_characters = nullptr;  ///< null if the text is empty
};

template <class Write>
WideString WideString::Build(size_t size, Write write) {
  WideString text;
  if (size > 0) {
    text.m_characters = Allocate(size);
    text.m_characters->length = write(text.m_characters->Begin());
    text.m_characters->Begin()[text.m_characters->length] = L'\0';
  }
  return text;
}

WideString operator+(const WideString& head, std::wstring_view tail);

inline bool operator==(const WideString& a, std::wstring_view b) noexcept {
  return std::wstring_view(a) == b;
}
inline bool operator!=(const WideString& a, std::wstring_view b) noexcept {
  return std::wstring_view(a) != b;
}
inline bool operator<(const WideString& a, const WideString& b) noexcept {
  return std::wstring_view(a) < std::wstring_view(b);
}

}  // namespace qm::common
