// QMObjMgr.DLL, the project-object manager: tells the type of the project that is active.

#include <windows.h>

#include <cwchar>

/// The type of the active project: 0 installer database, 1 script. It is the number in the
/// environment variable QM_PROJECT_TYPE, read anew at every call; 0 when there is none.
extern "C" long WINAPI GetActiveProjectType() {
  wchar_t text[16];
  const DWORD length = ::GetEnvironmentVariableW(L"QM_PROJECT_TYPE", text, 16);
  return length > 0 && length < 16 ? std::wcstol(text, nullptr, 10) : 0;
}
