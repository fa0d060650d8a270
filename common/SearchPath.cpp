#include "common/SearchPath.h"

#include <windows.h>

#include <algorithm>

namespace {

std::wstring_view WithoutBlanks(std::wstring_view text) noexcept {
  constexpr std::wstring_view blanks = L" \t";
  const size_t begin = text.find_first_not_of(blanks);
  if (begin == std::wstring_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

}  // namespace

std::vector<CWideString> SplitCommaList(std::wstring_view list) {
  std::vector<CWideString> entries;
  for (size_t begin = 0; begin <= list.size();) {
    const size_t end = std::min(list.find(L',', begin), list.size());
    const std::wstring_view entry = WithoutBlanks(list.substr(begin, end - begin));
    if (!entry.empty()) {
      entries.emplace_back(entry);
    }
    begin = end + 1;
  }
  return entries;
}

CWideString ExpandEnvironmentText(const CWideString& text) {
  if (std::wstring_view(text).find(L'%') == std::wstring_view::npos) {
    return text;
  }
  const DWORD size = ::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
  std::wstring expanded(size, L'\0');
  const DWORD length = ::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), size);
  return length > 0 && length <= size ? CWideString(expanded.c_str()) : text;
}

std::vector<CWideString> ExpandSearchPath(std::wstring_view path) {
  std::vector<CWideString> folders = SplitCommaList(path);
  for (CWideString& folder : folders) {
    folder = ExpandEnvironmentText(folder);
  }
  const auto isEmpty = [](const CWideString& folder) { return folder.empty(); };
  folders.erase(std::remove_if(folders.begin(), folders.end(), isEmpty), folders.end());
  return folders;
}
