#pragma once

#include <windows.h>

namespace qm::com {

/// Sets the error object of the calling thread. It has `description`, `iid` and, as its source, the
/// ProgID of `clsid`, but no help. Returns `hr`, or DISP_E_EXCEPTION if `hr` is S_OK, even if the
/// error object cannot be created.
HRESULT SetComErrorInfo(REFCLSID clsid, const wchar_t* description, REFIID iid,
                        HRESULT hr) noexcept;

}  // namespace qm::com
