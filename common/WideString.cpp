#include "common/WideString.h"

#include <cstdarg>
#include <cstdio>

#include "common/LastError.h"

namespace {

template <class Make>
std::wstring KeepingLastError(Make make) {
  const CLastErrorKeeper keeper;
  return make();
}

}  // namespace

CWideString::CWideString(const wchar_t* text)
    : m_text(KeepingLastError([&] { return std::wstring(text ? text : L""); })) {}

CWideString::CWideString(const wchar_t* text, size_t length)
    : m_text(KeepingLastError([&] { return std::wstring(text, length); })) {}

CWideString::CWideString(std::wstring_view text)
    : m_text(KeepingLastError([&] { return std::wstring(text); })) {}

CWideString::CWideString(const CWideString& other)
    : m_text(KeepingLastError([&] { return other.m_text; })) {}

CWideString& CWideString::operator=(const CWideString& other) {
  const CLastErrorKeeper keeper;
  m_text = other.m_text;
  return *this;
}

CWideString CWideString::Format(const wchar_t* format, ...) {
  const CLastErrorKeeper keeper;
  // The C library's own functions by their underscored names: the standard ones are replaced by
  // MinGW's, in which "%s" takes narrow text.
  va_list arguments{};
  va_start(arguments, format);
  const int length = _vscwprintf(format, arguments);
  va_end(arguments);
  if (length <= 0) {
    return {};
  }
  std::wstring text(static_cast<size_t>(length), L'\0');
  va_start(arguments, format);
  _vsnwprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return CWideString(std::move(text));
}

CWideString& CWideString::operator+=(std::wstring_view tail) {
  const CLastErrorKeeper keeper;
  m_text.append(tail);
  return *this;
}

CWideString operator+(const CWideString& head, std::wstring_view tail) {
  CWideString joined(head);
  joined += tail;
  return joined;
}
