#pragma once

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/ComPtr.h"

namespace qm::bench {

/// Ends the program with a message that names what failed.
[[noreturn]] inline void Fail(const char* what, long code) {
  std::fprintf(stderr, "%s: 0x%08lX\n", what, static_cast<unsigned long>(code));
  std::exit(1);
}

/// Ends the program if a COM call failed.
inline void ThrowIfFailed(const char* what, HRESULT hr) {
  if (FAILED(hr)) {
    Fail(what, hr);
  }
}

/// Ends the program if a call of the installer or of the system failed.
inline void Require(const char* what, UINT result) {
  if (result != ERROR_SUCCESS) {
    Fail(what, static_cast<long>(result));
  }
}

/// Creates an object of a class in a DLL of the build.
template <class Interface>
common::ComPtr<Interface> NewObject(const wchar_t* dll, REFCLSID clsid) {
  wchar_t path[MAX_PATH];
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  *std::wcsrchr(path, L'\\') = L'\0';
  HMODULE library = ::LoadLibraryW((std::wstring(path) + L"\\..\\bin\\" + dll).c_str());
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(::GetProcAddress(library, "DllGetClassObject")));
  common::ComPtr<IClassFactory> factory;
  common::ComPtr<Interface> object;
  ThrowIfFailed("class object", getClassObject(clsid, __uuidof(IClassFactory),
                                               reinterpret_cast<void**>(factory.Put())));
  ThrowIfFailed("object", factory->CreateInstance(nullptr, __uuidof(Interface),
                                                  reinterpret_cast<void**>(object.Put())));
  return object;
}

/// Calls `use` with the WIN32_FIND_DATAW of every module file in a folder.
template <class Use>
void ForEachModule(const std::wstring& folder, Use use) {
  WIN32_FIND_DATAW found;
  HANDLE find = ::FindFirstFileW((folder + L"\\*.msm").c_str(), &found);
  if (find == INVALID_HANDLE_VALUE) {
    Fail("folder", static_cast<long>(::GetLastError()));
  }
  do {
    use(found);
  } while (::FindNextFileW(find, &found));
  ::FindClose(find);
}

}  // namespace qm::bench
