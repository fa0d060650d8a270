#include "client/terminal/WrapLines.h"

#include <algorithm>
#include <string_view>

#include "client/terminal/TextWidth.h"

namespace mmcat {

namespace {

/// Where the text after the first gap of a line begins, in bytes; 0 if there is no gap, or only
/// one in the right half of the page.
size_t FindSecondColumn(std::string_view line, size_t start, size_t width) noexcept {
  const size_t gap = line.find("  ", start);
  const size_t second = gap == std::string_view::npos ? gap : line.find_first_not_of(' ', gap);
  return second != std::string_view::npos && MeasureWidth(line.substr(0, second)) <= width / 2
             ? second
             : 0;
}

/// The bytes of the longest beginning of a word that fits, broken where a reader expects it.
size_t BreakWord(std::string_view word, size_t width) noexcept {
  const std::string_view fitting = TakeStart(word, width);
  const size_t separator = fitting.find_last_of("/\\._");
  const bool isUseful = separator != std::string_view::npos && separator >= fitting.size() / 2;
  constexpr size_t kWidest = 2;  // columns of a character
  return isUseful          ? separator + 1
         : fitting.empty() ? TakeStart(word, kWidest).size()
                           : fitting.size();
}

void WrapLine(std::string_view line, size_t width, std::string& text) {
  const size_t start = std::min(line.find_first_not_of(' '), line.size());
  const size_t second = FindSecondColumn(line, start, width);
  const size_t hanging =
      second > 0 ? MeasureWidth(line.substr(0, second)) : std::min(start + 2, width / 2);
  const std::string indent(hanging, ' ');
  std::string prefix(line.substr(0, std::min(start, width / 2)));
  line.remove_prefix(start);
  size_t kept = second > 0 ? second - start : 0;  // never broken: up to the second column
  while (true) {
    const size_t room = width - prefix.size();
    const std::string_view fitting = TakeStart(line, room);
    if (fitting.size() == line.size()) {
      break;
    }
    // A blank just after the edge ends the line there.
    size_t end = line[fitting.size()] == ' ' ? fitting.size() : fitting.rfind(' ');
    if (end == std::string_view::npos || end <= kept) {
      const size_t used = MeasureWidth(line.substr(0, kept));
      end = kept + BreakWord(line.substr(kept), room - used);
    }
    text += prefix;
    text += line.substr(0, end);
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
    line.remove_prefix(std::min(line.find_first_not_of(' ', end), line.size()));
    prefix = indent;
    kept = 0;
  }
  if (!line.empty()) {
    text += prefix;
    text += line;
    text += '\n';
  }
}

}  // namespace

std::string WrapLines(const std::string& text, size_t width) {
  std::string wrapped;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    const std::string_view line = std::string_view(text).substr(start, end - start);
    if (MeasureWidth(line) <= width) {
      wrapped += line;
      wrapped += end < text.size() ? "\n" : "";
    } else {
      WrapLine(line, width, wrapped);
    }
    start = end + 1;
  }
  return wrapped;
}

}  // namespace mmcat
