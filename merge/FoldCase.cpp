#include "merge/FoldCase.h"

#include <windows.h>

#include "common/Utf8.h"

std::string FoldCase(const std::string& text) {
  std::string folded = text;
  bool isPlain = true;
  for (char& c : folded) {
    isPlain = isPlain && static_cast<unsigned char>(c) < 0x80;
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  }
  if (isPlain) {
    return folded;
  }
  std::wstring wide(ToWide(text));
  ::CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return ToUtf8(wide);
}
