#include "common/FileIndexEntry.h"

#include <algorithm>

namespace qm::common {

namespace {

bool IsDigits(std::wstring_view text) noexcept {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

WideString AddNeutralLanguage(std::wstring_view key) {
  const WideString text(key);
  return key.find(L':') == std::wstring_view::npos ? text + L":0" : text;
}

}  // namespace

WideString ParseFileIndexEntry(std::wstring_view entry) {
  const size_t colon = entry.find(L':');
  if (colon == std::wstring_view::npos || entry.substr(0, colon) != L"0") {
    return {};
  }
  return AddNeutralLanguage(entry.substr(colon + 1));
}

WideString ParsePlatformFileIndexEntry(std::wstring_view entry) {
  const size_t colon = entry.find(L':');
  const bool hasFlag = colon != std::wstring_view::npos && IsDigits(entry.substr(0, colon));
  return hasFlag || entry.empty() ? ParseFileIndexEntry(entry) : AddNeutralLanguage(entry);
}

}  // namespace qm::common
