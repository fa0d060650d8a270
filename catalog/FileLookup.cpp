#include "catalog/FileLookup.h"

#include <windows.h>

#include <algorithm>

#include "gallery/IniIndexes.h"

namespace {

CWideString LowerCaseFileName(std::wstring_view file) {
  const size_t end = file.find_last_of(L"\\/:");
  std::wstring name(end == std::wstring_view::npos ? file : file.substr(end + 1));
  ::CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  return CWideString(std::move(name));
}

bool IsFlag(std::wstring_view text) noexcept {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

/// A key without a language names the neutral one.
CWideString WithLanguage(std::wstring_view key) {
  const CWideString text(key);
  return key.find(L':') == std::wstring_view::npos ? text + L":0" : text;
}

/// What an entry of the form "flag:key" names: nothing unless the flag is 0.
CWideString KeyBehindFlag(std::wstring_view value) {
  const size_t colon = value.find(L':');
  if (colon == std::wstring_view::npos || value.substr(0, colon) != L"0") {
    return {};
  }
  return WithLanguage(value.substr(colon + 1));
}

/// The table of system files also has plain module keys, without a flag.
CWideString KeyOfPlatformEntry(std::wstring_view value) {
  const size_t colon = value.find(L':');
  const bool hasFlag = colon != std::wstring_view::npos && IsFlag(value.substr(0, colon));
  return hasFlag || value.empty() ? KeyBehindFlag(value) : WithLanguage(value);
}

}  // namespace

CWideString FindModuleForFile(std::wstring_view file) {
  const CWideString name = LowerCaseFileName(file);
  if (name.empty()) {
    return {};  // the index may have a line without a name
  }
  const CIniIndexes& indexes = CIniIndexes::Instance();
  const auto found = indexes.FileModules().find(name);
  if (found != indexes.FileModules().end()) {
    return KeyBehindFlag(found->second);
  }
  const auto platform = indexes.PlatformFileModules().find(name);
  return platform == indexes.PlatformFileModules().end() ? CWideString()
                                                         : KeyOfPlatformEntry(platform->second);
}
