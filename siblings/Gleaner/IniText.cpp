#include "siblings/Gleaner/IniText.h"

#include <windows.h>

#include <cstring>

#include "siblings/File.h"

namespace qm::siblings {

namespace {

bool RemovePrefix(std::string_view& bytes, std::string_view prefix) noexcept {
  if (bytes.substr(0, prefix.size()) != prefix) {
    return false;
  }
  bytes.remove_prefix(prefix.size());
  return true;
}

std::wstring FromUtf16(std::string_view bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text;
}

std::wstring FromUtf16BigEndian(std::string_view bytes) {
  std::wstring text = FromUtf16(bytes);
  for (wchar_t& unit : text) {
    unit = static_cast<wchar_t>(unit << 8 | unit >> 8);
  }
  return text;
}

std::wstring FromCodePage(UINT codePage, std::string_view bytes) {
  // No code page decodes a byte to more than one UTF-16 unit.
  std::wstring text(bytes.size(), L'\0');
  const int length =
      ::MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                            static_cast<int>(text.size()));
  text.resize(static_cast<size_t>(length));
  text.shrink_to_fit();
  return text;
}

}  // namespace

std::wstring DecodeTextFile(std::string_view bytes) {
  if (RemovePrefix(bytes, "\xEF\xBB\xBF")) {
    return FromCodePage(CP_UTF8, bytes);
  }
  if (RemovePrefix(bytes, "\xFF\xFE")) {
    return FromUtf16(bytes);
  }
  if (RemovePrefix(bytes, "\xFE\xFF")) {
    return FromUtf16BigEndian(bytes);
  }
  return FromCodePage(CP_ACP, bytes);
}

std::wstring ReadTextFile(const common::WideString& path) {
  const common::UniqueFile file = OpenFile(path);
  if (!file) {
    RaiseLastFileError(path);
  }
  return DecodeTextFile(ReadAllBytes(file, path));
}

}  // namespace qm::siblings
