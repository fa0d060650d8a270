#pragma once

#include <windows.h>

namespace qm::com {

/// Sets the error object of the calling thread: `description`, the ProgID of `clsid` as its source,
/// `iid`, no help. Returns `hr`, or DISP_E_EXCEPTION if `hr` is S_OK. Returns the same if the error
/// object cannot be created.
HRESULT SetComErrorInfo(REFCLSID clsid, const wchar_t* description, REFIID iid,
                        HRESULT hr) noexcept;

}  // namespace qm::com
