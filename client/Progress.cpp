#include "client/Progress.h"

#include <cstdio>

#include "client/Console.h"

namespace {

constexpr ULONGLONG kInterval = 100;  // milliseconds

int g_width = 0;  // of what stands in the line

}  // namespace

Progress::Progress() noexcept : m_isShown(IsConsole(STD_ERROR_HANDLE)) {
  if (m_isShown) {
    Show("reading the list of modules");
  }
}

void Progress::Step() noexcept {
  ++m_begun;
  if (!m_isShown || ::GetTickCount64() < m_nextTime) {
    return;
  }
  char text[64];
  std::snprintf(text, sizeof text, "reading %zu of %zu modules", m_begun, m_total);
  Show(text);
}

void Progress::Show(const char* text) noexcept {
  Erase();
  g_width = std::fprintf(stderr, "%s", text);
  std::fflush(stderr);
  m_nextTime = ::GetTickCount64() + kInterval;
}

void Progress::Erase() noexcept {
  if (g_width > 0) {
    std::fprintf(stderr, "\r%*s\r", g_width, "");
    std::fflush(stderr);
    g_width = 0;
  }
}
