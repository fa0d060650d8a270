#include "client/commands/Advice.h"

#include <windows.h>

#include "client/catalog/ModuleNames.h"
#include "client/catalog/PathSpelling.h"
#include "common/FolderFiles.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

bool HasExtension(const std::string& path, const wchar_t* extension) {
  return qm::common::HasExtension(qm::text::ToWide(path), extension);
}

DWORD ReadAttributes(const std::string& path) {
  return ::GetFileAttributesW(ToSystemPath(path).c_str());
}

/// The folder of a path, as an argument for --folder.
std::string GetFolder(const std::string& path) {
  const size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? "." : slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

}  // namespace

bool IsFile(const std::string& path) {
  const DWORD attributes = ReadAttributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = ReadAttributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::string AdviseOnFile(const std::string& word) {
  if (IsFolder(word)) {
    return "this is a folder, not a module; mmcat list --folder " + word + " lists its modules";
  }
  if (HasExtension(word, L".msi") || HasExtension(word, L".msp")) {
    return "this is an installation package, not a merge module; mmcat reads .msm files only";
  }
  if (HasExtension(word, L".msm")) {
    return IsFile(word) ? "the catalog does not have this file; mmcat show " + word +
                              " reads it, --folder " + GetFolder(word) + " makes it the catalog"
                        : "the catalog has no such file, and it does not exist";
  }
  for (const wchar_t* const extension :
       {L".dll", L".exe", L".ocx", L".tlb", L".sys", L".ttf", L".chm"}) {
    if (HasExtension(word, extension)) {
      const std::string name = GetFileName(word);
      return "this is a file, not a module; mmcat which " + name + " lists what delivers it";
    }
  }
  return "";
}

}  // namespace mmcat
