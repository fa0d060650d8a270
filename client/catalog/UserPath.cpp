#include "client/catalog/UserPath.h"

#include <windows.h>

#include "client/catalog/PathSpelling.h"

namespace mmcat {

namespace {

DWORD ReadAttributes(const std::string& path) {
  return ::GetFileAttributesW(ToSystemPath(path).c_str());
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

std::string GetFileName(const std::string& path) {
  return path.substr(path.find_last_of("\\/") + 1);
}

std::string GetFolder(const std::string& path) {
  const size_t slash = path.find_last_of("\\/");
  return slash == std::string::npos ? "." : slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

std::string ValidateFileName(const std::string& file) {
  return file.empty() ? "the name is empty" : "";
}

}  // namespace mmcat
