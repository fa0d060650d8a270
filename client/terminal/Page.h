#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mmcat {

/// How text is laid out for its reader.
struct Page {
  /// The columns that a line can take; no value for output that is not read on a terminal, where
  /// nothing is shortened or broken.
  std::optional<size_t> width;
  std::string ellipsis = "…";
};

/// Returns the page of stdout's terminal; one without limits if stdout is not a terminal.
Page PageOfTerminal();

/// Lays out text for a page from now on. The default is one without limits.
void UsePage(Page page) noexcept;

const Page& CurrentPage() noexcept;

/// Notes that a table shortens cells for the page, or leaves out the columns with these headings.
void NoteShortened(const std::vector<std::string>& leftOut);

/// Returns a line for the reader about everything noted since the last call; empty if nothing was.
std::string TakeShorteningNote();

}  // namespace mmcat
