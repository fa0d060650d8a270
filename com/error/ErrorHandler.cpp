#include "com/error/ErrorHandler.h"

#include <cstring>
#include <new>

#include "com/error/ComException.h"
#include "com/error/ErrorInfo.h"
#include "com/error/win32_exception.h"
#include "common/Bstr.h"
#include "common/SystemMessage.h"

namespace qm::com {

namespace {

struct ExceptionDeleter {
  void operator()(CException* exception) const noexcept { exception->Delete(); }
};

// Reporting a failure neither throws nor uses the C++ heap, because memory may be short.

void TraceException(HRESULT hr, const wchar_t* description) noexcept {
  wchar_t number[16];
  ::wsprintfW(number, L"%i", hr);
  ::OutputDebugStringW(L"\nException caught: ");
  ::OutputDebugStringW(number);
  ::OutputDebugStringW(L" = ");
  ::OutputDebugStringW(description);
}

common::UniqueBstr JoinContext(const wchar_t* description, const wchar_t* context) noexcept {
  constexpr std::wstring_view separator = L"\n     > ";
  const size_t head = std::wcslen(description);
  const size_t tail = std::wcslen(context);
  common::UniqueBstr text(
      ::SysAllocStringLen(nullptr, static_cast<UINT>(head + separator.size() + tail)));
  if (text) {
    wchar_t* position = text.Get();
    position = std::wmemcpy(position, description, head) + head;
    position = std::wmemcpy(position, separator.data(), separator.size()) + separator.size();
    std::wmemcpy(position, context, tail);
  }
  return text;
}

HRESULT Report(REFCLSID clsid, HRESULT hr, REFIID iid, const wchar_t* description,
               const wchar_t* context) noexcept {
  TraceException(hr, description);
  common::UniqueBstr message;
  if (context) {
    message = JoinContext(description, context);
  }
  return SetComErrorInfo(clsid, message ? message.Get() : description, iid, hr);
}

HRESULT ReportOutOfMemory() noexcept {
  TraceException(E_OUTOFMEMORY, L"");
  ::SetErrorInfo(0, nullptr);  // an object that another failure left would mislead
  return E_OUTOFMEMORY;
}

HRESULT ReportUnexpected(REFCLSID clsid) noexcept {
  const common::UniqueLocalText text =
      common::FormatSystemMessage(static_cast<DWORD>(E_UNEXPECTED));
  return Report(clsid, E_UNEXPECTED, GUID_NULL, text ? text.Get() : L"Unknown error", nullptr);
}

}  // namespace

HRESULT ReportFailure(REFCLSID clsid, const com_exception& failure,
                      const wchar_t* context) noexcept {
  return Report(clsid, failure.hr, failure.iid, failure.description.c_str(), context);
}

HRESULT ReportCurrentException(REFCLSID clsid) noexcept {
  try {
    throw;
  } catch (const com_exception& failure) {
    return ReportFailure(clsid, failure, nullptr);
  } catch (_CComException<int>* exception) {
    const HRESULT hr = ReportFailure(clsid, exception->Failure(), nullptr);
    exception->Delete();
    return hr;
  } catch (const win32_exception& failure) {
    return Report(clsid, failure.hresult(), GUID_NULL, failure.message(), nullptr);
  } catch (const std::bad_alloc&) {
    return ReportOutOfMemory();
  } catch (MemoryException* exception) {
    exception->Delete();
    return ReportOutOfMemory();
  } catch (CException* exception) {
    exception->Delete();
    return ReportUnexpected(clsid);
  } catch (...) {
    return ReportUnexpected(clsid);
  }
}

std::unique_ptr<const com_exception> CaptureCurrentException() {
  try {
    throw;
  } catch (const com_exception& failure) {
    return std::make_unique<com_exception>(failure);
  } catch (_CComException<int>* exception) {
    const std::unique_ptr<_CComException<int>, ExceptionDeleter> holder(exception);
    return std::make_unique<com_exception>(exception->Failure());
  } catch (const win32_exception& failure) {
    return std::make_unique<com_exception>(failure.hresult(), failure.message());
  }
}

void SwallowCurrentException() noexcept {
  try {
    throw;
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {  // NOLINT(bugprone-empty-catch): dropping it is the purpose
  }
  ::SetErrorInfo(0, nullptr);
}

}  // namespace qm::com
