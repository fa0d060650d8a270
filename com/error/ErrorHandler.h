#pragma once

#include <windows.h>

#include <memory>

#include "com/error/Raise.h"
#include "com/error/com_exception.h"

/// Reports a failure under a class: writes the debugger trace, makes the thread's error object and
/// returns `failure.hr` (DISP_E_EXCEPTION for 0). A context is added to the description, behind a
/// line break and "     > ".
HRESULT ReportFailure(REFCLSID clsid, const com_exception& failure,
                      const wchar_t* context) noexcept;

/// Call from a catch clause: reports the exception that is being handled under a class and returns
/// its HRESULT. Out of memory is E_OUTOFMEMORY without an error object, an exception of no known
/// kind E_UNEXPECTED. Exceptions thrown by pointer are deleted.
HRESULT ReportCurrentException(REFCLSID clsid) noexcept;

/// Runs `work`, which returns an HRESULT, and answers what it answers; an exception is reported
/// under the class and becomes the result. An error object from before the call is dropped first.
///
/// Every interface method that can fail does its work in here. Elsewhere DropFailures and
/// KeepFailure catch, and these for what they throw themselves or call: image/Database, which names
/// the part that damage lies in; msidb/ImageDatabase, which raises what the reader of bytes throws
/// as failures of the installer; CComModule, which prepares threads; the application object, which
/// refuses to start without memory.
template <class Work>
HRESULT RunAtBoundary(REFCLSID clsid, Work&& work) noexcept {
  ::SetErrorInfo(0, nullptr);
  try {
    return work();
  } catch (...) {
    return ReportCurrentException(clsid);
  }
}

/// The boundary of a method that gives one result. A null `out` is E_POINTER; it is cleared before
/// `fill`, which returns an HRESULT, runs and sets it.
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

/// The same for `work` that returns the result, or for an interface the caller's reference.
template <class Out, class Work>
HRESULT Answer(REFCLSID clsid, Out* out, Work&& work) noexcept {
  return FillOut(clsid, out, [&] {
    *out = work();
    return S_OK;
  });
}

/// The same for `work` that returns a text, of which the caller gets a BSTR.
template <class Work>
HRESULT AnswerText(REFCLSID clsid, BSTR* out, Work&& work) noexcept {
  return Answer(clsid, out, [&] { return MakeBstr(work()).Release(); });
}

/// Call from a catch clause: drops the exception that is being handled; one thrown by pointer is
/// deleted.
void DropCurrentException() noexcept;

/// Runs `work`; an exception, and what the thread has of an error object then, is dropped without a
/// trace.
template <class Work>
void DropFailures(Work&& work) noexcept {
  try {
    work();
  } catch (...) {
    DropCurrentException();
  }
}

/// Call from a catch clause: the failure that is being handled, as it would be reported; one thrown
/// by pointer is deleted. Out of memory, and what is of no known kind, is thrown on.
std::unique_ptr<const com_exception> KeepCurrentException();

/// Runs `work` and gives the failure that it raised, or null; for work that is allowed to fail, and
/// whose failure somebody will ask for later. Out of memory says nothing about the work and passes
/// on to the caller.
template <class Work>
std::unique_ptr<const com_exception> KeepFailure(Work&& work) {
  try {
    work();
    return nullptr;
  } catch (...) {
    return KeepCurrentException();
  }
}

/// Base of a class that reports failures under its class identifier.
template <const CLSID* pClsid>
class CErrorHandler {
 public:
  HRESULT Report(const com_exception& failure, const wchar_t* context) const noexcept {
    return ReportFailure(*pClsid, failure, context);
  }

 protected:
  // The method boundary, see RunAtBoundary, FillOut, Answer and AnswerText.
  template <class Work>
  static HRESULT MethodBoundary(Work&& work) noexcept {
    return RunAtBoundary(*pClsid, static_cast<Work&&>(work));
  }
  template <class Out, class Fill>
  static HRESULT FillOut(Out* out, Fill&& fill) noexcept {
    return ::FillOut(*pClsid, out, static_cast<Fill&&>(fill));
  }
  template <class Out, class Work>
  static HRESULT Answer(Out* out, Work&& work) noexcept {
    return ::Answer(*pClsid, out, static_cast<Work&&>(work));
  }
  template <class Work>
  static HRESULT AnswerText(BSTR* out, Work&& work) noexcept {
    return ::AnswerText(*pClsid, out, static_cast<Work&&>(work));
  }
};
