#pragma once

#include <windows.h>

#include <string>

/// Runs a script in this process; `language` is "VBScript" or "JScript". The script knows `object`
/// by a name, unless it is null. Gives the script's global variable "result" as text, or for an
/// error that it does not handle "0x", the HRESULT, " line ", its number and the description.
std::wstring RunScript(const wchar_t* language, const std::wstring& code, IDispatch* object,
                       const wchar_t* name = L"module");
