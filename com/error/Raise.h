#pragma once

#include "com/error/com_exception.h"
#include "common/Bstr.h"

// What comments mean by it: a failure is *raised* when it is thrown in a form that the boundary of
// a method (RunAtBoundary) reports with its own HRESULT and description, as CComException* or
// qm::win32_exception. Everything else is *thrown*: std::bad_alloc, and what is caught again on its
// way to a boundary.

/// Raises `failure`: throws a new CComException* that holds a copy.
[[noreturn]] void Raise(const com_exception& failure);

/// Captures the failure `hr` with the thread's error object and raises it.
[[noreturn]] void RaiseHResult(HRESULT hr);

/// Raises a failing HRESULT. A non-negative one, S_FALSE included, is no failure.
inline void RaiseIfFailed(HRESULT hr) {
  if (FAILED(hr)) {
    RaiseHResult(hr);
  }
}

/// Raises the thread's last-error code: throws qm::win32_exception.
[[noreturn]] void RaiseLastError();

/// A new BSTR of `text`. Throws std::bad_alloc.
CUniqueBstr MakeBstr(std::wstring_view text);
