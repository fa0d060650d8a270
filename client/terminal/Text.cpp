#include "client/terminal/Text.h"

namespace mmcat {

std::string MakePrintable(std::string text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
    if (c < 0x20 || c == 0x7F) {
      text[i] = ' ';
    } else if (c == 0xC2 && next < 0xA0) {  // U+0080 to U+009F
      text.replace(i, 2, " ");
    }
  }
  return text;
}

std::string QuoteArgument(const std::string& word) {
  const bool isPlain = !word.empty() && word.find_first_of(" \t*?&|<>()^;'$`") == std::string::npos;
  return isPlain ? word : '"' + word + '"';
}

}  // namespace mmcat
