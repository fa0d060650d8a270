#include "msidb/CodePageText.h"

#include <algorithm>

namespace qm::msidb {

namespace {

/// Returns whether bytes below 0x80 are the characters of ASCII in this code page. True for the
/// code pages of nearly all modules, whose keys and names are mostly ASCII.
bool IsAsciiSuperset(UINT codePage) noexcept {
  switch (codePage) {
    case CP_ACP:
    case CP_UTF8:
    case 874:
    case 932:
    case 936:
    case 949:
    case 950:
      return true;
    default:
      return codePage >= 1250 && codePage <= 1258;
  }
}

bool IsAscii(std::string_view bytes) noexcept {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

}  // namespace

common::WideString DecodeCodePageText(std::string_view bytes, UINT codePage) {
  bytes = bytes.substr(0, bytes.find('\0'));
  if (bytes.empty()) {
    return {};
  }
  if (IsAsciiSuperset(codePage) && IsAscii(bytes)) {
    return common::WideString::Build(bytes.size(), [&](wchar_t* text) {
      std::copy(bytes.begin(), bytes.end(), text);
      return bytes.size();
    });
  }
  const auto convert = [&](wchar_t* text, int length) {
    return std::max(0, ::MultiByteToWideChar(codePage, 0, bytes.data(),
                                             static_cast<int>(bytes.size()), text, length));
  };
  const int length = convert(nullptr, 0);
  return common::WideString::Build(static_cast<std::size_t>(length), [&](wchar_t* text) {
    return static_cast<std::size_t>(convert(text, length));
  });
}

}  // namespace qm::msidb
