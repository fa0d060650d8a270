#pragma once

#include <windows.h>

#include "common/WideString.h"

namespace qm::msidb {

/// HRESULT of a view modification that failed because a row with the same primary key exists.
constexpr HRESULT kDuplicatePrimaryKey = static_cast<HRESULT>(0x800403E8);

/// Checks the result of an installer function. Returns `code` if it is ERROR_SUCCESS, otherwise
/// raises it as HRESULT_FROM_WIN32, or as kDuplicatePrimaryKey if `viewErrorDetail` is
/// MSIDBERROR_DUPLICATEKEY.
///
/// The description is the installer's formatted last-error record, or the system's text if there is
/// no record, directly followed by the call: "MsiOpenDatabase(C:\path\module.msm)". Empty arguments
/// are left out.
UINT ReportInstallerResult(UINT code, const wchar_t* functionName, const wchar_t* argument1 = L"",
                           const wchar_t* argument2 = L"", int viewErrorDetail = 0);

/// Raises `code` as ReportInstallerResult does, for a reader that replaces an installer function.
/// The description begins with the sentence `cause`, or with the system's text for `code` if that
/// is empty.
[[noreturn]] void RaiseFileFailure(UINT code, const common::WideString& cause,
                                   const wchar_t* functionName, const wchar_t* argument1 = L"");

}  // namespace qm::msidb
