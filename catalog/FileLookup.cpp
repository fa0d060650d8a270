#include "catalog/FileLookup.h"

#include <windows.h>

#include "common/FileIndexEntry.h"
#include "gallery/IndexTables.h"

namespace qm::catalog {

namespace {

common::WideString LowerCaseFileName(std::wstring_view file) {
  const size_t end = file.find_last_of(L"\\/:");
  std::wstring name(end == std::wstring_view::npos ? file : file.substr(end + 1));
  ::CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  return common::WideString(name);
}

}  // namespace

common::WideString FindModuleForFile(std::wstring_view file) {
  const common::WideString name = LowerCaseFileName(file);
  if (name.empty()) {
    return {};  // the index may have a line with an empty name
  }
  const gallery::IndexTables& indexes = gallery::IndexTables::Instance();
  const auto found = indexes.FilesToModules().find(name);
  if (found != indexes.FilesToModules().end()) {
    return common::ParseFileIndexEntry(found->second);
  }
  const auto platform = indexes.PlatformFilesToModules().find(name);
  return platform == indexes.PlatformFilesToModules().end()
             ? common::WideString()
             : common::ParsePlatformFileIndexEntry(platform->second);
}

}  // namespace qm::catalog
