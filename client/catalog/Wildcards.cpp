#include "client/catalog/Wildcards.h"

#include <string_view>

#include "text/Fold.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

bool MatchesFolded(std::u16string_view pattern, std::u16string_view text) noexcept {
  size_t p = 0;
  size_t t = 0;
  size_t star = std::u16string_view::npos;  // the last one seen
  size_t resumed = 0;                       // where the text continues after what it stands for
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resumed = t;
    } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == text[t])) {
      ++p;
      ++t;
    } else if (star != std::u16string_view::npos) {
      p = star + 1;
      t = ++resumed;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', p) == std::u16string_view::npos;
}

}  // namespace

bool HasWildcard(const std::string& pattern) noexcept {
  return pattern.find_first_of("*?") != std::string::npos;
}

bool MatchesPattern(const std::string& pattern, const std::string& text) {
  return MatchesFolded(qm::text::FoldCase(qm::text::ToUtf16(pattern)),
                       qm::text::FoldCase(qm::text::ToUtf16(text)));
}

}  // namespace mmcat
