#pragma once

#include <windows.h>

#include <exception>

#include "common/WideString.h"

/// The failure of a COM call inside the server: its HRESULT with the error information that the
/// called component left on the thread.
class com_exception : public std::exception {
 public:
  /// Captures `failure` together with the thread's error object, which this consumes. Without an
  /// error object the description is the system's text for `failure`, or "Unknown error".
  explicit com_exception(HRESULT failure);

  /// A failure with the server's own description; the thread's error object is left alone.
  com_exception(HRESULT failure, CWideString text);

  const char* what() const noexcept override { return "com_exception"; }

  HRESULT hr;
  /// The interface that the error object named; GUID_NULL when none.
  GUID iid{};
  /// The class of `source`; GUID_NULL when there is none or the ProgID is unknown.
  GUID clsid{};
  CWideString description;
  /// The ProgID of the component that failed; empty when the component left none.
  CWideString source;
};
