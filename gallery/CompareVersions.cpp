#include "gallery/CompareVersions.h"

#include <array>
#include <cwchar>

namespace qm::gallery {

namespace {

using Version = std::array<unsigned short, 4>;

Version Parse(const wchar_t* text) noexcept {
  Version version{};
  for (unsigned short& part : version) {
    part = static_cast<unsigned short>(::_wtol(text));
    const wchar_t* const dot = std::wcschr(text, L'.');
    if (!dot) {
      break;
    }
    text = dot + 1;
  }
  return version;
}

}  // namespace

int CompareVersions(const common::WideString& a, const common::WideString& b) noexcept {
  const Version left = Parse(a.c_str());
  const Version right = Parse(b.c_str());
  if (left == right) {
    return 0;
  }
  return left < right ? -1 : 1;
}

}  // namespace qm::gallery
