// QMObjMgr.DLL, the project-object manager: returns the type of the active project.

#include <windows.h>

#include <cwchar>

/// Returns the type of the active project: 0 for installer database, 1 for script. Reads it from
/// the environment variable QM_PROJECT_TYPE at every call; 0 if that is not set or not a number.
extern "C" long WINAPI GetActiveProjectType() {
  wchar_t text[16];
  const DWORD length = ::GetEnvironmentVariableW(L"QM_PROJECT_TYPE", text, 16);
  return length > 0 && length < 16 ? std::wcstol(text, nullptr, 10) : 0;
}
