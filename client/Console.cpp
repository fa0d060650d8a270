#include "client/Console.h"

#include <cstdio>

namespace {

bool IsConsole() noexcept {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &mode) ||
         ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode);
}

}  // namespace

CUtf8Console::CUtf8Console() noexcept
    : m_previousCodePage(IsConsole() ? ::GetConsoleOutputCP() : 0) {
  // A console costs one call per character when the program does not buffer.
  static char buffer[1 << 16];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
  if (m_previousCodePage) {
    ::SetConsoleOutputCP(CP_UTF8);
  }
}

CUtf8Console::~CUtf8Console() {
  std::fflush(stdout);
  if (m_previousCodePage) {
    ::SetConsoleOutputCP(m_previousCodePage);
  }
}

bool FlushOutput() noexcept { return std::fflush(stdout) == 0 && !std::ferror(stdout); }
