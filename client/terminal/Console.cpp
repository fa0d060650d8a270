#include "client/terminal/Console.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "text/Utf.h"

namespace mmcat {

namespace {

bool g_consoleFailed = false;

HANDLE GetOutputHandle() noexcept { return ::GetStdHandle(STD_OUTPUT_HANDLE); }

bool AreColorsForbidden() noexcept {
  wchar_t value[2];
  return ::GetEnvironmentVariableW(L"NO_COLOR", value, 2) != 0;
}

/// How much of a text to write to a console at once: a limited amount that ends between characters.
size_t MeasurePiece(std::wstring_view text) noexcept {
  constexpr size_t kMost = 8192;  // older consoles accept little more
  const size_t size = std::min(text.size(), kMost);
  return size < text.size() && IS_HIGH_SURROGATE(text[size - 1]) ? size - 1 : size;
}

void WriteToConsole(DWORD standardHandle, const std::string& text) {
  const std::wstring wide = qm::text::ToWide(text);
  std::wstring_view rest(wide);
  while (!rest.empty()) {
    const size_t size = MeasurePiece(rest);
    DWORD written = 0;
    if (!::WriteConsoleW(::GetStdHandle(standardHandle), rest.data(), static_cast<DWORD>(size),
                         &written, nullptr)) {
      g_consoleFailed = true;
      return;
    }
    rest.remove_prefix(size);
  }
}

void WriteTo(DWORD standardHandle, FILE* stream, const std::string& text) {
  if (IsConsole(standardHandle)) {
    WriteToConsole(standardHandle, text);
  } else {
    std::fwrite(text.data(), 1, text.size(), stream);
  }
}

}  // namespace

bool IsConsole(DWORD standardHandle) noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(standardHandle), &mode) != 0;
}

void WriteOutput(const std::string& text) { WriteTo(STD_OUTPUT_HANDLE, stdout, text); }

void WriteError(const std::string& text) {
  WriteTo(STD_ERROR_HANDLE, stderr, text);
  std::fflush(stderr);
}

bool FlushOutput() noexcept {
  return std::fflush(stdout) == 0 && !std::ferror(stdout) && !g_consoleFailed;
}

bool EnableColors() noexcept {
  DWORD mode = 0;
  return !AreColorsForbidden() && ::GetConsoleMode(GetOutputHandle(), &mode) &&
         ::SetConsoleMode(GetOutputHandle(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

ConsoleMode::ConsoleMode() noexcept {
  // The C library takes the null device for a console and would write to it byte by byte.
  constexpr size_t kBufferSize = 65536;
  std::setvbuf(stdout, nullptr, _IOFBF, kBufferSize);
  std::setvbuf(stderr, nullptr, _IOFBF, kBufferSize);
  ::GetConsoleMode(GetOutputHandle(), &m_previous);
}

ConsoleMode::~ConsoleMode() {
  if (m_previous) {
    ::SetConsoleMode(GetOutputHandle(), m_previous);
  }
}

}  // namespace mmcat
