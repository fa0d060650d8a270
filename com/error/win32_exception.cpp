#include "com/error/win32_exception.h"

#include <utility>

#include "common/SystemMessage.h"

namespace qm {

namespace {

struct LocalNarrowTextTraits {
  using Handle = char*;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::LocalFree(text); }
};

using NarrowText = common::UniqueHandle<LocalNarrowTextTraits>;

NarrowText ToSystemCodePage(const wchar_t* text) noexcept {
  const int size = ::WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
  NarrowText narrow(static_cast<char*>(::LocalAlloc(LMEM_FIXED, static_cast<SIZE_T>(size))));
  if (narrow && !::WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.Get(), size, nullptr, nullptr)) {
    narrow.Reset();
  }
  return narrow;
}

}  // namespace

struct win32_exception::Shared {
  const DWORD code;
  LONG count = 1;
  bool formatted = false;
  common::UniqueLocalText message{};
  NarrowText narrow{};
};

win32_exception::win32_exception(DWORD code) : m_shared(new Shared{code}) {}

win32_exception::win32_exception(const win32_exception& other) noexcept
    : std::exception(other), m_shared(other.m_shared) {
  ::InterlockedIncrement(&m_shared->count);
}

win32_exception& win32_exception::operator=(const win32_exception& other) noexcept {
  win32_exception copy(other);
  std::swap(m_shared, copy.m_shared);
  return *this;
}

win32_exception::~win32_exception() {
  if (::InterlockedDecrement(&m_shared->count) == 0) {
    delete m_shared;
  }
}

DWORD win32_exception::code() const noexcept { return m_shared->code; }

HRESULT win32_exception::hresult() const noexcept { return HResultFromCode(m_shared->code); }

const wchar_t* win32_exception::message() const noexcept {
  if (!m_shared->formatted && m_shared->code != 0) {
    m_shared->formatted = true;
    m_shared->message = common::FormatSystemMessage(m_shared->code);
  }
  return m_shared->message ? m_shared->message.Get() : L"";
}

const char* win32_exception::what() const noexcept {
  const wchar_t* const text = message();
  if (*text != L'\0' && !m_shared->narrow) {
    m_shared->narrow = ToSystemCodePage(text);
  }
  return m_shared->narrow ? m_shared->narrow.Get() : "";
}

}  // namespace qm
