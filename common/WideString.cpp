#include "common/WideString.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <new>

#include "common/LastError.h"

namespace qm::common {

WideString::Characters* WideString::Allocate(size_t size) {
  const ScopedLastError keeper;
  if (size > (SIZE_MAX - sizeof(Characters)) / sizeof(wchar_t) - 1) {
    throw std::bad_alloc();
  }
  void* const block = ::operator new(sizeof(Characters) + (size + 1) * sizeof(wchar_t));
  return new (block) Characters{1, 0};
}

void WideString::clear() noexcept {
  Characters* const characters = std::exchange(m_characters, nullptr);
  if (characters && characters->users.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    ::operator delete(characters);
  }
}

WideString::WideString(const wchar_t* text)
    : WideString(text ? std::wstring_view(text) : std::wstring_view()) {}

WideString::WideString(std::wstring_view text)
    : WideString(Build(text.size(),
                       [&](wchar_t* characters) { return text.copy(characters, text.size()); })) {}

WideString WideString::Format(const wchar_t* format, ...) {
  // Microsoft's functions, by their underscored names: MinGW replaces the standard names by its own
  // functions, in which "%s" takes narrow text.
  const ScopedLastError keeper;
  va_list arguments{};
  va_start(arguments, format);
  const int length = _vscwprintf(format, arguments);
  va_end(arguments);
  if (length <= 0) {
    return {};
  }
  // Allocates first: nothing may be thrown between va_start and va_end.
  const auto size = static_cast<size_t>(length);
  WideString text = Build(size, [size](wchar_t*) { return size; });
  va_start(arguments, format);
  _vsnwprintf(text.m_characters->Begin(), size, format, arguments);
  va_end(arguments);
  return text;
}

WideString& WideString::operator+=(std::wstring_view tail) { return *this = *this + tail; }

WideString operator+(const WideString& head, std::wstring_view tail) {
  return WideString::Build(head.length() + tail.size(), [&](wchar_t* characters) {
    const size_t length = std::wstring_view(head).copy(characters, head.length());
    return length + tail.copy(characters + length, tail.size());
  });
}

}  // namespace qm::common
