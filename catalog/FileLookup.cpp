#include "catalog/FileLookup.h"

#include <windows.h>

#include "common/FileIndexEntry.h"
#include "gallery/IndexTables.h"

namespace {

CWideString LowerCaseFileName(std::wstring_view file) {
  const size_t end = file.find_last_of(L"\\/:");
  std::wstring name(end == std::wstring_view::npos ? file : file.substr(end + 1));
  ::CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  return CWideString(name);
}

}  // namespace

CWideString FindModuleForFile(std::wstring_view file) {
  const CWideString name = LowerCaseFileName(file);
  if (name.empty()) {
    return {};  // the index may have a line with an empty name
  }
  const CIniIndexes& indexes = CIniIndexes::Instance();
  const auto found = indexes.FileModules().find(name);
  if (found != indexes.FileModules().end()) {
    return ModuleOfFileEntry(found->second);
  }
  const auto platform = indexes.PlatformFileModules().find(name);
  return platform == indexes.PlatformFileModules().end()
             ? CWideString()
             : ModuleOfPlatformFileEntry(platform->second);
}
