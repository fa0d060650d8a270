#include "client/terminal/Progress.h"

#include <algorithm>
#include <utility>

#include "client/terminal/Console.h"

namespace mmcat {

namespace {

constexpr ULONGLONG kInterval = 100;  // milliseconds
constexpr size_t kLongest = 60;       // longer than any text shown

size_t g_width = 0;  // of the text on the line, in characters

}  // namespace

Progress::Progress() : m_isShown(IsConsole(STD_ERROR_HANDLE)) {
  if (m_isShown) {
    Show("reading the list of modules");
  }
}

void Progress::CountModule() noexcept {
  ++m_begun;
  if (!m_isShown || ::GetTickCount64() < m_nextTime) {
    return;
  }
  try {
    Show("reading " + std::to_string(m_begun) + " of " + std::to_string(m_total) + " modules");
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): nobody misses it
  }
}

void Progress::Show(const std::string& text) {
  Erase();
  WriteError(text);
  g_width = text.size();
  m_nextTime = ::GetTickCount64() + kInterval;
}

void Progress::Erase() noexcept {
  wchar_t blank[kLongest + 2];
  const size_t width = std::min(std::exchange(g_width, 0), kLongest);
  if (width > 0) {
    std::fill_n(blank, width + 2, L' ');
    blank[0] = blank[width + 1] = L'\r';
    DWORD written = 0;
    ::WriteConsoleW(::GetStdHandle(STD_ERROR_HANDLE), blank, static_cast<DWORD>(width + 2),
                    &written, nullptr);
  }
}

}  // namespace mmcat
