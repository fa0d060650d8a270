#include "msidb/DirectoryName.h"

namespace msidb {

namespace {

/// The part of `text` before the first `separator`, or after it if `second`; all of `text` if it
/// has no separator.
std::wstring_view SideOf(std::wstring_view text, wchar_t separator, bool second) noexcept {
  const size_t position = text.find(separator);
  if (position == std::wstring_view::npos) {
    return text;
  }
  return second ? text.substr(position + 1) : text.substr(0, position);
}

}  // namespace

CWideString SplitDefaultDir(const CWideString& defaultDir, bool useSourcePart, bool useShortName) {
  return SideOf(SideOf(defaultDir, L':', useSourcePart), L'|', !useShortName);
}

bool ModuleSuffixMatch(std::wstring_view text) noexcept {
  return text.size() == 36 || text.size() == 32;
}

CWideString StripModuleSuffix(const CWideString& key) {
  const std::wstring_view text = key;
  const size_t dot = text.rfind(L'.');
  const bool hasSuffix = dot != std::wstring_view::npos && ModuleSuffixMatch(text.substr(dot + 1));
  return hasSuffix ? CWideString(text.substr(0, dot)) : key;
}

}  // namespace msidb
