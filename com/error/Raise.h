#pragma once

#include "com/error/com_exception.h"
#include "common/Bstr.h"

/// Throws a new CComException* that holds a copy of `failure`.
[[noreturn]] void Raise(const com_exception& failure);

/// Captures the failure `hr` with the thread's error object and raises it.
[[noreturn]] void RaiseHResult(HRESULT hr);

/// Raises a failing HRESULT. A non-negative one, S_FALSE included, is no failure.
inline void ThrowIfFailed(HRESULT hr) {
  if (FAILED(hr)) {
    RaiseHResult(hr);
  }
}

/// Throws qm::win32_exception for the thread's last-error code.
[[noreturn]] void RaiseLastError();

/// A new BSTR of `text`. Throws std::bad_alloc.
CUniqueBstr MakeBstr(std::wstring_view text);
