#include "common/IgnoringCase.h"

#include <cwctype>

namespace qm::common {

namespace {

wchar_t ToLower(wchar_t c) noexcept {
  if (c < 0x80) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
  }
  return static_cast<wchar_t>(std::towlower(c));
}

/// Returns whether two characters differ in more than case.
bool DifferIgnoringCase(wchar_t a, wchar_t b) noexcept {
  return a != b && ToLower(a) != ToLower(b);
}

}  // namespace

int CompareIgnoringCase(const wchar_t* a, const wchar_t* b) noexcept {
  while (*a && !DifferIgnoringCase(*a, *b)) {
    ++a;
    ++b;
  }
  return static_cast<int>(ToLower(*a)) - static_cast<int>(ToLower(*b));
}

bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept {
  if (a.size() != b.size()) {
    return false;
  }
  for (size_t i = 0; i < a.size(); ++i) {
    if (DifferIgnoringCase(a[i], b[i])) {
      return false;
    }
  }
  return true;
}

}  // namespace qm::common
