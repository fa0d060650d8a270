#include "common/FolderFiles.h"

#include "common/IgnoringCase.h"

bool HasExtension(std::wstring_view fileName, std::wstring_view extension) noexcept {
  return fileName.size() >= extension.size() &&
         EqualsIgnoringCase(fileName.substr(fileName.size() - extension.size()), extension);
}
