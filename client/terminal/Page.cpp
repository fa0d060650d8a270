#include "client/terminal/Page.h"

#include <algorithm>
#include <utility>

#include "client/terminal/Console.h"

namespace mmcat {

namespace {

Page& GetPage() noexcept {
  static Page page;
  return page;
}

bool g_isShortened = false;
std::string g_leftOut;  // headings, separated by commas

}  // namespace

Page PageOfTerminal() {
  Page page;
  if (IsTerminal(STD_OUTPUT_HANDLE)) {
    constexpr size_t kNarrowest = 40;
    // The last column stays free: some consoles begin another line once it is written.
    page.width = std::max(GetTerminalWidth(STD_OUTPUT_HANDLE) - 1, kNarrowest);
    if (!CanShowEllipsis()) {
      page.ellipsis = "..";
    }
  }
  return page;
}

void UsePage(Page page) noexcept { GetPage() = std::move(page); }

const Page& CurrentPage() noexcept { return GetPage(); }

void NoteShortened(const std::vector<std::string>& leftOut) {
  g_isShortened = g_isShortened || leftOut.empty();
  for (const std::string& heading : leftOut) {
    if ((", " + g_leftOut + ',').find(", " + heading + ',') == std::string::npos) {
      g_leftOut += (g_leftOut.empty() ? "" : ", ") + heading;
    }
  }
}

std::string TakeShorteningNote() {
  const bool isShortened = std::exchange(g_isShortened, false);
  const std::string leftOut = std::exchange(g_leftOut, "");
  if (!isShortened) {
    return leftOut.empty() ? "" : "(--wide adds " + leftOut + ")\n";
  }
  return "(shortened; --wide gives all" + (leftOut.empty() ? "" : ", and adds " + leftOut) + ")\n";
}

}  // namespace mmcat
