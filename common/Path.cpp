#include "common/Path.h"

#include <windows.h>

namespace qm::common {

WideString JoinPath(const WideString& base, std::wstring_view tail) {
  if (base.empty()) {
    return tail;
  }
  const bool baseEnds = std::wstring_view(base).back() == L'\\';
  const bool tailBegins = !tail.empty() && tail.front() == L'\\';
  if (baseEnds && tailBegins) {
    return base + tail.substr(1);
  }
  WideString path(base);
  if (!baseEnds && !tailBegins) {
    path += L"\\";
  }
  path += tail;
  return path;
}

WideString ParentFolder(std::wstring_view path) {
  const size_t end = path.rfind(L'\\');
  if (end == std::wstring_view::npos) {
    return {};
  }
  const bool isRoot = end == 2 && path[1] == L':';
  return path.substr(0, isRoot ? end + 1 : end);
}

WideString ResolveFullPath(const WideString& path) {
  wchar_t buffer[MAX_PATH];
  const DWORD size = ::GetFullPathNameW(path.c_str(), MAX_PATH, buffer, nullptr);
  if (size < MAX_PATH) {
    return size == 0 ? path : WideString(buffer, size);
  }
  std::wstring full(size, L'\0');
  const DWORD length = ::GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  return length == 0 || length >= size ? path : WideString(full.c_str(), length);
}

WideString ToExtendedPath(const WideString& path) {
  constexpr size_t kFileName = 12;  // a folder's path must leave room for an 8.3 name
  const std::wstring_view text = path;
  if (text.size() < MAX_PATH - kFileName || text.substr(0, 4) == LR"(\\?\)") {
    return path;
  }
  const bool isOnServer = text.substr(0, 2) == LR"(\\)";
  return WideString(isOnServer ? LR"(\\?\UNC)" : LR"(\\?\)") + text.substr(isOnServer ? 1 : 0);
}

int CompareFileNames(std::wstring_view a, std::wstring_view b) noexcept {
  return ::CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                static_cast<int>(b.size()), TRUE) -
         CSTR_EQUAL;
}

bool PathExists(const WideString& path) {
  return ::GetFileAttributesW(ToExtendedPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace qm::common
