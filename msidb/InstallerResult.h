#pragma once

#include <windows.h>

#include "common/WideString.h"

namespace msidb {

/// HRESULT of a view modification that found a row with the same primary key.
constexpr HRESULT kDuplicateKey = static_cast<HRESULT>(0x800403E8);

/// Passes the result of an installer function on: returns `code` when it is ERROR_SUCCESS, and
/// raises any other as HRESULT_FROM_WIN32, or as kDuplicateKey when `viewErrorDetail` is
/// MSIDBERROR_DUPLICATEKEY.
///
/// The description is the installer's formatted last-error record, else the system's text, directly
/// followed by the call: "MsiOpenDatabase(C:\path\module.msm)". An argument that is empty is left
/// out.
UINT ReportInstallerResult(UINT code, const wchar_t* functionName, const wchar_t* argument1 = L"",
                           const wchar_t* argument2 = L"", int viewErrorDetail = 0);

/// Raises the failure of a reader that stands for an installer function: as ReportInstallerResult,
/// with the sentence `cause` in place of the installer's text. An empty cause leaves the system's
/// text for `code`.
[[noreturn]] void RaiseFileFailure(UINT code, const CWideString& cause, const wchar_t* functionName,
                                   const wchar_t* argument1 = L"");

}  // namespace msidb
