#include "catalog/FolderFiles.h"

#include <cwchar>

bool HasExtension(const wchar_t* fileName, std::wstring_view extension) noexcept {
  const size_t length = std::wcslen(fileName);
  return length >= extension.size() &&
         ::_wcsnicmp(fileName + length - extension.size(), extension.data(), extension.size()) == 0;
}
