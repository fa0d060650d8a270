#include "client/catalog/PathSpelling.h"

#include <windows.h>

#include <cstring>
#include <map>
#include <memory>

#include "common/Path.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

constexpr size_t kRootSize = 3;  // of "Z:\"

PathSpelling g_spelling = PathSpelling::Native;

struct HeapDeleter {
  void operator()(void* memory) const noexcept { ::HeapFree(::GetProcessHeap(), 0, memory); }
};

/// The functions of Wine that translate full paths. They return null on failure, and are null on
/// Windows.
struct WinePaths {
  WinePaths() noexcept {
    const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
    toNative = reinterpret_cast<ToNative*>(
        reinterpret_cast<void*>(::GetProcAddress(kernel, "wine_get_unix_file_name")));
    toWindows = reinterpret_cast<ToWindows*>(
        reinterpret_cast<void*>(::GetProcAddress(kernel, "wine_get_dos_file_name")));
  }

  using ToNative = char* __cdecl(const wchar_t*);
  using ToWindows = wchar_t* __cdecl(const char*);
  ToNative* toNative;
  ToWindows* toWindows;
};

const WinePaths& GetWinePaths() {
  static const WinePaths paths;
  return paths;
}

bool IsNative() { return g_spelling == PathSpelling::Native && GetWinePaths().toNative; }

bool IsLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Returns whether a text has the root of a drive at a position.
bool HasRootAt(const std::string& text, size_t position) noexcept {
  return position + kRootSize <= text.size() && IsLetter(text[position]) &&
         text[position + 1] == ':' && text[position + 2] == '\\';
}

/// Spells a folder, without a slash at its end. Each is translated once, because that takes several
/// file system calls; most files share their folder with many others.
std::string SpellFolder(const std::string& folder) {
  static std::map<std::string, std::string> known;
  const auto found = known.find(folder);
  if (found != known.end()) {
    return found->second;
  }
  std::string existing = folder;
  std::string missing;  // what the file system does not have
  std::string spelled;
  while (true) {
    const bool isRoot = existing.size() < kRootSize;
    const std::unique_ptr<char, HeapDeleter> native(
        GetWinePaths().toNative(qm::text::ToWide(isRoot ? existing + '\\' : existing).c_str()));
    if (native) {
      spelled = native.get();
    }
    if (native || isRoot) {
      break;
    }
    const size_t slash = existing.find_last_of('\\');
    missing.insert(0, existing.substr(slash + 1)).insert(0, 1, '/');
    existing.resize(slash);
  }
  spelled.erase(spelled.find_last_not_of('/') + 1);
  spelled += missing;
  return known[folder] = spelled;
}

}  // namespace

void UsePathSpelling(PathSpelling spelling) noexcept { g_spelling = spelling; }

std::string SpellPath(const std::string& fullPath) {
  constexpr char kPrefix[] = "\\\\?\\";
  constexpr size_t kPrefixSize = sizeof kPrefix - 1;
  const bool isExtended =
      fullPath.compare(0, kPrefixSize, kPrefix) == 0 && HasRootAt(fullPath, kPrefixSize);
  std::string path = isExtended ? fullPath.substr(kPrefixSize) : fullPath;
  if (!IsNative() || !HasRootAt(path, 0)) {
    return path;
  }
  const size_t slash = path.find_last_of('\\');
  return SpellFolder(path.substr(0, slash)) + '/' + path.substr(slash + 1);
}

std::string SpellPathsIn(const std::string& message) {
  if (!IsNative()) {
    return message;
  }
  std::string text;
  for (size_t position = 0; position < message.size();) {
    if (!HasRootAt(message, position) || (position > 0 && IsLetter(message[position - 1]))) {
      text += message[position++];
      continue;
    }
    // The message may continue after the path with characters that a file name can have. That does
    // not matter, because only the last backslash has to be found.
    size_t end = position + kRootSize;
    while (end < message.size() && !std::strchr("\"*:<>?|", message[end]) &&
           !HasRootAt(message, end)) {
      ++end;
    }
    text += SpellPath(message.substr(position, end - position));
    position = end;
  }
  return text;
}

std::string ResolveUserPath(const std::string& path) {
  return SpellPath(qm::text::ToUtf8(qm::common::ResolveFullPath(ToSystemPath(path))));
}

qm::common::WideString ToSystemPath(const std::string& path) {
  if (!path.empty() && path.front() == '/' && GetWinePaths().toWindows) {
    const std::unique_ptr<wchar_t, HeapDeleter> full(GetWinePaths().toWindows(path.c_str()));
    if (full) {
      return full.get();
    }
  }
  return qm::text::ToWide(path);
}

}  // namespace mmcat
