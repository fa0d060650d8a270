#include "common/SystemFolders.h"

#include <windows.h>

#include "common/Path.h"
#include "common/RegistryKey.h"

namespace qm::common {

namespace {

WideString ReadRegistryText(HKEY key, const wchar_t* name) {
  DWORD size = 0;
  if (::RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) {
    return {};
  }
  // One character more, because the value need not be null-terminated.
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
  DWORD type = REG_NONE;
  const LSTATUS status =
      ::RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
  const bool isText = type == REG_SZ || type == REG_EXPAND_SZ;
  return status == ERROR_SUCCESS && isText ? WideString(text.c_str()) : WideString();
}

/// Returns the path that `getFolder` writes into a buffer. Empty if `getFolder` returns a length of
/// 0.
WideString CallFolderFunction(UINT(WINAPI* getFolder)(LPWSTR, UINT)) {
  wchar_t folder[MAX_PATH];
  const UINT length = getFolder(folder, MAX_PATH);
  return length > 0 && length < MAX_PATH ? WideString(folder, length) : WideString();
}

/// Returns the path of a folder in the Windows folder.
WideString JoinWindowsFolder(const wchar_t* name) {
  const WideString windows = CallFolderFunction(::GetWindowsDirectoryW);
  return windows.empty() ? windows : JoinPath(windows, name);
}

}  // namespace

WideString GetProgramFolder(unsigned long request) {
  const bool native = (request & kNativeFolder) != 0;
  UniqueRegistryKey key;
  ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", 0,
                  native ? KEY_READ | KEY_WOW64_64KEY : KEY_READ, key.Put());
  const bool common = (request & ~kNativeFolder) == kCommonFiles;
  return key ? ReadRegistryText(key.Get(), common ? L"CommonFilesDir" : L"ProgramFilesDir")
             : WideString();
}

WideString GetSystemFolder(unsigned long request) {
  switch (request) {
    case kSysNative:
      return JoinWindowsFolder(L"sysnative");
    case kSysWow64:
      return JoinWindowsFolder(L"syswow64");
    default:
      return CallFolderFunction(::GetSystemDirectoryW);
  }
}

}  // namespace qm::common
