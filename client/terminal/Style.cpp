#include "client/terminal/Style.h"

#include <algorithm>

namespace mmcat {

namespace {

constexpr char kEscape = '\x1b';
constexpr char kBold[] = "\x1b[1m";
constexpr char kYellow[] = "\x1b[33m";
constexpr char kPlain[] = "\x1b[0m";

}  // namespace

std::string MarkHeading(const std::string& text) { return kBold + text + kPlain; }

std::string MarkHighlight(const std::string& text) { return kYellow + text + kPlain; }

std::string RemoveMarks(const std::string& text) {
  std::string plain;
  plain.reserve(text.size());
  for (auto c = text.begin(); c != text.end();) {
    if (*c == kEscape) {
      c = std::find(c, text.end(), 'm');
      c += c != text.end();
    } else {
      plain += *c++;
    }
  }
  return plain;
}

}  // namespace mmcat
