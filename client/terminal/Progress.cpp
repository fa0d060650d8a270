#include "client/terminal/Progress.h"

#include <utility>

#include "client/terminal/Console.h"

namespace mmcat {

namespace {

constexpr ULONGLONG kInterval = 100;  // milliseconds

bool g_isShown = false;
bool g_isDisabled = false;

}  // namespace

Progress::Progress() : m_isTerminal(!g_isDisabled && IsTerminal(STD_ERROR_HANDLE)) {
  if (m_isTerminal) {
    Show("reading the list of modules");
  }
}

void Progress::Disable() noexcept { g_isDisabled = true; }

void Progress::ShowModule(long number, long total) noexcept {
  if (!m_isTerminal || ::GetTickCount64() < m_nextTime) {
    return;
  }
  try {
    Show("reading " + std::to_string(number) + " of " + std::to_string(total) + " modules");
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): nobody misses it
  }
}

void Progress::Show(const std::string& text) {
  Erase();
  WriteError(text.substr(0, GetTerminalWidth(STD_ERROR_HANDLE) - 1));  // on one line
  g_isShown = true;
  m_nextTime = ::GetTickCount64() + kInterval;
}

void Progress::Erase() noexcept {
  if (std::exchange(g_isShown, false)) {
    EraseErrorLine();
  }
}

}  // namespace mmcat
