#pragma once

#include <windows.h>

/// Makes the error object of the calling thread: `description`, the ProgID of `clsid` as its
/// source, `iid`, no help. Returns `hr`, or DISP_E_EXCEPTION when `hr` is 0. A failure to make the
/// object is not reported: the caller still gets `hr`.
HRESULT SetComErrorInfo(REFCLSID clsid, const wchar_t* description, REFIID iid,
                        HRESULT hr) noexcept;
