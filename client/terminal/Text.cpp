#include "client/terminal/Text.h"

namespace mmcat {

namespace {

/// How the end of a list is joined.
struct ListEnd {
  const char* beforeLast;
  const char* beforeRest;
  const char* afterRest;
};

std::string Join(const std::vector<std::string>& items, size_t most, const ListEnd& end) {
  // "and 1 more" would often be longer than the item.
  const size_t shown = items.size() <= most + 1 ? items.size() : most;
  std::string text;
  for (size_t i = 0; i < shown; ++i) {
    text += (i == 0 ? "" : i + 1 == items.size() ? end.beforeLast : ", ") + items[i];
  }
  return shown == items.size()
             ? text
             : text + end.beforeRest + std::to_string(items.size() - shown) + end.afterRest;
}

}  // namespace

std::string MakePrintable(std::string text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
    if (c < 0x20 || c == 0x7F) {
      text[i] = ' ';
    } else if (c == 0xC2 && next >= 0x80 && next < 0xA0) {  // U+0080 to U+009F
      text.replace(i, 2, " ");
    }
  }
  return text;
}

std::string QuoteArgument(const std::string& word) {
  const bool isPlain = !word.empty() && word.find_first_of(" \t*?&|<>()^;'$`") == std::string::npos;
  return isPlain ? word : '"' + word + '"';
}

std::string JoinSome(const std::vector<std::string>& items, size_t most) {
  return Join(items, most, {", ", " and ", " more"});
}

std::string JoinAlternatives(const std::vector<std::string>& items, size_t most) {
  return Join(items, most, {" or ", " or ", " others"});
}

}  // namespace mmcat
