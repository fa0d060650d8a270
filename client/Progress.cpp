#include "client/Progress.h"

#include <cstdio>

#include "client/Console.h"

namespace {

// Milliseconds. What is done at once needs no progress.
constexpr ULONGLONG kFirst = 500;
constexpr ULONGLONG kNext = 100;

int g_width = 0;  // of what stands in the line

}  // namespace

Progress::Progress(size_t total) noexcept
    : m_total(total),
      m_isShown(IsConsole(STD_ERROR_HANDLE)),
      m_nextTime(::GetTickCount64() + kFirst) {}

void Progress::Step() noexcept {
  ++m_begun;
  if (!m_isShown || ::GetTickCount64() < m_nextTime) {
    return;
  }
  m_nextTime = ::GetTickCount64() + kNext;
  char line[64];
  std::snprintf(line, sizeof line, "reading %zu of %zu modules", m_begun, m_total);
  g_width = std::fprintf(stderr, "\r%s", line) - 1;
}

void Progress::Erase() noexcept {
  if (g_width > 0) {
    std::fprintf(stderr, "\r%*s\r", g_width, "");
    g_width = 0;
  }
}
