#include "client/Console.h"

#include <cstdio>

namespace {

HANDLE Output() noexcept { return ::GetStdHandle(STD_OUTPUT_HANDLE); }

bool IsForbidden() noexcept {
  wchar_t value[2];
  return ::GetEnvironmentVariableW(L"NO_COLOR", value, 2) != 0;
}

}  // namespace

bool IsConsole(DWORD standardHandle) noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(standardHandle), &mode) != 0;
}

CUtf8Console::CUtf8Console() noexcept
    : m_previousCodePage(IsConsole(STD_OUTPUT_HANDLE) || IsConsole(STD_ERROR_HANDLE)
                             ? ::GetConsoleOutputCP()
                             : 0) {
  // A console costs one call per character when the program does not buffer, and shows no character
  // of which it gets the bytes one by one.
  static char buffer[1 << 16];
  static char remarks[1 << 12];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
  std::setvbuf(stderr, remarks, _IOFBF, sizeof remarks);
  ::GetConsoleMode(Output(), &m_previousMode);
  if (m_previousCodePage) {
    ::SetConsoleOutputCP(CP_UTF8);
  }
}

CUtf8Console::~CUtf8Console() {
  std::fflush(stdout);
  if (m_previousMode) {
    ::SetConsoleMode(Output(), m_previousMode);
  }
  if (m_previousCodePage) {
    ::SetConsoleOutputCP(m_previousCodePage);
  }
}

bool EnableColors() noexcept {
  DWORD mode = 0;
  return !IsForbidden() && ::GetConsoleMode(Output(), &mode) &&
         ::SetConsoleMode(Output(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool FlushOutput() noexcept { return std::fflush(stdout) == 0 && !std::ferror(stdout); }
