#include "msidb/CodePageText.h"

#include <algorithm>

#include "text/Ascii.h"

namespace qm::msidb {

common::WideString DecodeCodePageText(std::string_view bytes, UINT codePage) {
  bytes = bytes.substr(0, bytes.find('\0'));
  if (bytes.empty()) {
    return {};
  }
  if (text::IsAsciiSuperset(codePage) && text::IsAscii(bytes)) {
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
