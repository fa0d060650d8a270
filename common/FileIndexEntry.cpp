#include "common/FileIndexEntry.h"

#include <algorithm>

namespace {

bool IsFlag(std::wstring_view text) noexcept {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

CWideString WithLanguage(std::wstring_view key) {
  const CWideString text(key);
  return key.find(L':') == std::wstring_view::npos ? text + L":0" : text;
}

}  // namespace

CWideString ModuleOfFileEntry(std::wstring_view entry) {
  const size_t colon = entry.find(L':');
  if (colon == std::wstring_view::npos || entry.substr(0, colon) != L"0") {
    return {};
  }
  return WithLanguage(entry.substr(colon + 1));
}

CWideString ModuleOfPlatformFileEntry(std::wstring_view entry) {
  const size_t colon = entry.find(L':');
  const bool hasFlag = colon != std::wstring_view::npos && IsFlag(entry.substr(0, colon));
  return hasFlag || entry.empty() ? ModuleOfFileEntry(entry) : WithLanguage(entry);
}
