#pragma once

#include <windows.h>

#include <memory>

#include "com/error/Raise.h"
#include "com/error/com_exception.h"

namespace qm::com {

/// Reports a failure of the class `clsid`: writes the debugger trace, sets the thread's error
/// object and returns `failure.hr` (DISP_E_EXCEPTION for 0). A `context` that is not null is
/// appended to the description after a line break and "     > ".
HRESULT ReportFailure(REFCLSID clsid, const com_exception& failure,
                      const wchar_t* context) noexcept;

/// Call from a catch clause. Reports the current exception as a failure of the class `clsid` and
/// returns its HRESULT: E_OUTOFMEMORY without an error object if out of memory, E_UNEXPECTED for an
/// exception of unknown type. Deletes an exception thrown by pointer.
HRESULT ReportCurrentException(REFCLSID clsid) noexcept;

/// Clears the thread's error object, runs `work` and returns its HRESULT. An exception that `work`
/// throws is reported as a failure of the class `clsid`, and its HRESULT is returned.
///
/// Every interface method that can fail does its work in here. Other code catches exceptions
/// through SwallowFailures and CaptureFailure, except in four places: image/Database names the
/// damaged part; msidb/ImageDatabase raises the exceptions of the byte reader as installer
/// failures; ComServer prepares threads; the application object refuses to start without memory.
template <class Work>
HRESULT RunAtBoundary(REFCLSID clsid, Work&& work) noexcept {
  ::SetErrorInfo(0, nullptr);
  try {
    return work();
  } catch (...) {
    return ReportCurrentException(clsid);
  }
}

/// The boundary of a method with one out parameter. Returns E_POINTER if `out` is null. Otherwise
/// clears `*out` and returns the HRESULT of `fill`, which sets it.
template <class Out, class Fill>
HRESULT FillOut(REFCLSID clsid, Out* out, Fill&& fill) noexcept {
  return RunAtBoundary(clsid, [&]() -> HRESULT {
    if (!out) {
      return E_POINTER;
    }
    *out = {};
    return fill();
  });
}

/// The same for `work` that returns the value of `*out`. If that is an interface, `work` returns
/// the caller's reference.
template <class Out, class Work>
HRESULT Answer(REFCLSID clsid, Out* out, Work&& work) noexcept {
  return FillOut(clsid, out, [&] {
    *out = work();
    return S_OK;
  });
}

/// The same for `work` that returns text, which the caller gets as a BSTR.
template <class Work>
HRESULT AnswerText(REFCLSID clsid, BSTR* out, Work&& work) noexcept {
  return Answer(clsid, out, [&] { return AllocateBstr(work()).Release(); });
}

/// Call from a catch clause. Swallows the current exception, deleting one thrown by pointer, and
/// clears the thread's error object.
void SwallowCurrentException() noexcept;

/// Runs `work`. If it throws, swallows the exception and clears the thread's error object.
template <class Work>
void SwallowFailures(Work&& work) noexcept {
  try {
    work();
  } catch (...) {
    SwallowCurrentException();
  }
}

/// Call from a catch clause. Returns the current failure as it would be reported, and deletes one
/// thrown by pointer. Rethrows out-of-memory exceptions and those of unknown type.
std::unique_ptr<const com_exception> CaptureCurrentException();

/// Runs `work` and returns the failure that it raised, or null. Use it to keep a failure that is
/// reported later. Rethrows out-of-memory exceptions, which say nothing about the work, and those
/// of unknown type.
template <class Work>
std::unique_ptr<const com_exception> CaptureFailure(Work&& work) {
  try {
    work();
    return nullptr;
  } catch (...) {
    return CaptureCurrentException();
  }
}

/// Base of a class that reports failures under its CLSID.
template <const CLSID* pClsid>
class CErrorHandler {
 public:
  HRESULT Report(const com_exception& failure, const wchar_t* context) const noexcept {
    return ReportFailure(*pClsid, failure, context);
  }

 protected:
  // The boundary functions above, for this class.
  template <class Work>
  static HRESULT MethodBoundary(Work&& work) noexcept {
    return RunAtBoundary(*pClsid, static_cast<Work&&>(work));
  }
  template <class Out, class Fill>
  static HRESULT FillOut(Out* out, Fill&& fill) noexcept {
    return com::FillOut(*pClsid, out, static_cast<Fill&&>(fill));
  }
  template <class Out, class Work>
  static HRESULT Answer(Out* out, Work&& work) noexcept {
    return com::Answer(*pClsid, out, static_cast<Work&&>(work));
  }
  template <class Work>
  static HRESULT AnswerText(BSTR* out, Work&& work) noexcept {
    return com::AnswerText(*pClsid, out, static_cast<Work&&>(work));
  }
};

}  // namespace qm::com
