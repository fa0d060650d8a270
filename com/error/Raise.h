#pragma once

#include "com/error/com_exception.h"
#include "common/Bstr.h"

namespace qm::com {

// In comments, a failure is *raised* if it is thrown as CComException* or qm::win32_exception: the
// boundary of a method (RunAtBoundary) reports these with their own HRESULT and description.
// Anything else is *thrown*: std::bad_alloc, and exceptions that are caught before they reach a
// boundary.

/// Raises `failure`: throws a new CComException* that holds a copy.
[[noreturn]] void Raise(const com_exception& failure);

/// Captures the failure `hr` with the thread's error object and raises it.
[[noreturn]] void RaiseHResult(HRESULT hr);

/// Raises `hr` if it is a failure. Success codes, S_FALSE included, do nothing.
inline void RaiseIfFailed(HRESULT hr) {
  if (FAILED(hr)) {
    RaiseHResult(hr);
  }
}

/// Raises the thread's last-error code as qm::win32_exception.
[[noreturn]] void RaiseLastError();

/// Allocates a BSTR with a copy of `text`. Throws std::bad_alloc.
common::UniqueBstr AllocateBstr(std::wstring_view text);

}  // namespace qm::com
