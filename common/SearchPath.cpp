#include "common/SearchPath.h"

#include <windows.h>

#include <algorithm>
#include <map>

#include "common/DllLifetime.h"
#include "common/ExclusiveLock.h"
#include "common/FolderFiles.h"
#include "common/IgnoringCase.h"
#include "common/Path.h"

namespace qm::common {

namespace {

std::wstring_view TrimBlanks(std::wstring_view text) noexcept {
  constexpr std::wstring_view blanks = L" \t";
  const size_t begin = text.find_first_not_of(blanks);
  if (begin == std::wstring_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// Removes the prefix "\\?\" from a full path, unless the rest would name something else, as for a
/// volume.
WideString RemoveExtendedPrefix(const WideString& path) {
  const std::wstring_view text(path);
  if (text.substr(0, 4) != LR"(\\?\)") {
    return path;
  }
  const bool isOnServer = EqualsIgnoringCase(text.substr(4, 4), LR"(UNC\)");
  const WideString plain =
      isOnServer ? WideString(LR"(\\)") + text.substr(8) : WideString(text.substr(4));
  return ResolveFullPath(plain) == plain ? plain : path;
}

/// Returns the path with its long names. Empty if nothing exists at the path.
WideString QueryLongPath(const WideString& path) {
  const ScopedNoDiskPrompts noPrompts;
  const DWORD size = ::GetLongPathNameW(path.c_str(), nullptr, 0);
  std::wstring names(size, L'\0');
  const DWORD length = ::GetLongPathNameW(path.c_str(), names.data(), size);
  return length > 0 && length < size ? WideString(names.c_str(), length) : WideString();
}

/// Caches the long form of paths that contain short names. Thread-safe.
class LongNames {
 public:
  /// Returns the path with its long names. Unchanged if it has no short names or nothing exists
  /// there.
  WideString Of(const WideString& path) {
    if (std::wstring_view(path).find(L'~') == std::wstring_view::npos) {
      return path;
    }
    {
      const ExclusiveLock lock(m_lock);
      const auto known = m_known.find(path);
      if (known != m_known.end()) {
        return known->second;
      }
    }
    const WideString names = QueryLongPath(path);
    if (names.empty()) {
      return path;
    }
    const ExclusiveLock lock(m_lock);
    return m_known.emplace(path, names).first->second;
  }

 private:
  SRWLOCK m_lock = SRWLOCK_INIT;
  std::map<WideString, WideString> m_known;
};

DllWide<LongNames> theLongNames;

}  // namespace

std::vector<WideString> SplitCommaList(std::wstring_view list) {
  std::vector<WideString> entries;
  for (size_t begin = 0; begin <= list.size();) {
    const size_t end = std::min(list.find(L',', begin), list.size());
    const std::wstring_view entry = TrimBlanks(list.substr(begin, end - begin));
    if (!entry.empty()) {
      entries.emplace_back(entry);
    }
    begin = end + 1;
  }
  return entries;
}

WideString ExpandEnvironmentVariables(const WideString& text) {
  if (std::wstring_view(text).find(L'%') == std::wstring_view::npos) {
    return text;
  }
  const DWORD size = ::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
  std::wstring expanded(size, L'\0');
  const DWORD length = ::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), size);
  return length > 0 && length <= size ? WideString(expanded.c_str()) : text;
}

WideString ResolveSearchFolder(const WideString& entry) {
  WideString folder = RemoveExtendedPrefix(ResolveFullPath(ExpandEnvironmentVariables(entry)));
  const std::wstring_view text(folder);
  if (text.substr(0, 2) == LR"(\\)" &&
      text.find_first_not_of(LR"(\?.)") == std::wstring_view::npos) {
    return {};  // a network path without a server
  }
  const bool isDriveRoot = text.size() == 3 && text[1] == L':';
  if (text.size() > 1 && text.back() == L'\\' && !isDriveRoot) {
    folder = text.substr(0, text.size() - 1);
  }
  return theLongNames.Get([] { return new LongNames; }).Of(folder);
}

std::vector<WideString> ExpandSearchPath(std::wstring_view path) {
  std::vector<WideString> folders = SplitCommaList(path);
  for (WideString& folder : folders) {
    folder = ResolveSearchFolder(folder);
  }
  const auto isEmpty = [](const WideString& folder) { return folder.empty(); };
  folders.erase(std::remove_if(folders.begin(), folders.end(), isEmpty), folders.end());
  return folders;
}

}  // namespace qm::common
