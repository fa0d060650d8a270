#include "common/FolderFiles.h"

#include "text/Fold.h"

bool HasExtension(std::wstring_view fileName, std::wstring_view extension) noexcept {
  return fileName.size() >= extension.size() &&
         qm::text::CompareFolded(fileName.substr(fileName.size() - extension.size()), extension) ==
             0;
}
