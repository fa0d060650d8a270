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

}  // namespace mmcat
