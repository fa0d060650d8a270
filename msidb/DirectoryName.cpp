#include "msidb/DirectoryName.h"

namespace qm::msidb {

namespace {

/// Both return all of `text` if it has no separator.
std::wstring_view PartBefore(std::wstring_view text, wchar_t separator) noexcept {
  return text.substr(0, text.find(separator));
}
std::wstring_view PartAfter(std::wstring_view text, wchar_t separator) noexcept {
  const size_t position = text.find(separator);
  return position == std::wstring_view::npos ? text : text.substr(position + 1);
}

}  // namespace

common::WideString SplitDefaultDir(const common::WideString& defaultDir,
                                   const DefaultDirPart& part) {
  const std::wstring_view names =
      part.useSourcePart ? PartAfter(defaultDir, L':') : PartBefore(defaultDir, L':');
  return part.useShortName ? PartBefore(names, L'|') : PartAfter(names, L'|');
}

bool ModuleSuffixMatch(std::wstring_view text) noexcept {
  return text.size() == 36 || text.size() == 32;
}

common::WideString StripModuleSuffix(const common::WideString& key) {
  const std::wstring_view text = key;
  const size_t dot = text.rfind(L'.');
  const bool hasSuffix = dot != std::wstring_view::npos && ModuleSuffixMatch(text.substr(dot + 1));
  return hasSuffix ? common::WideString(text.substr(0, dot)) : key;
}

}  // namespace qm::msidb
