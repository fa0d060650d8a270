#pragma once

#include <windows.h>

#include <exception>

#include "common/WideString.h"

namespace qm {

/// A failed COM call inside the server: its HRESULT and the error information that the called
/// component left on the thread.
class com_exception : public std::exception {
 public:
  /// Captures `failure` and consumes the thread's error object. Without an error object, the
  /// description is the system's message for `failure`, or "Unknown error".
  explicit com_exception(HRESULT failure);

  /// Makes a failure with the server's own description. Leaves the thread's error object alone.
  com_exception(HRESULT failure, common::WideString text);

  const char* what() const noexcept override { return "com_exception"; }

  HRESULT hr;
  /// The interface that the error object names; GUID_NULL if it names none.
  GUID iid{};
  /// The class of `source`; GUID_NULL if `source` is empty or an unknown ProgID.
  GUID clsid{};
  common::WideString description;
  /// The ProgID of the component that failed; empty if the component reported none.
  common::WideString source;
};

}  // namespace qm
