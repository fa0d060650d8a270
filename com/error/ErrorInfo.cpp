#include "com/error/ErrorInfo.h"

#include <windows.h>

#include "common/ComPtr.h"
#include "common/UniqueHandle.h"

namespace qm::com {

namespace {

struct TaskTextTraits {
  using Handle = wchar_t*;
  static constexpr Handle None() noexcept { return nullptr; }
  static void Close(Handle text) noexcept { ::CoTaskMemFree(text); }
};

}  // namespace

HRESULT SetComErrorInfo(REFCLSID clsid, const wchar_t* description, REFIID iid,
                        HRESULT hr) noexcept {
  common::ComPtr<ICreateErrorInfo> create;
  if (SUCCEEDED(::CreateErrorInfo(create.Put()))) {
    // Set even if it is GUID_NULL: not every system clears a new error object.
    create->SetGUID(iid);
    common::UniqueHandle<TaskTextTraits> progId;
    if (SUCCEEDED(::ProgIDFromCLSID(clsid, progId.Put()))) {
      create->SetSource(progId.Get());
    }
    // SetDescription does not change the text, although its parameter is not const.
    create->SetDescription(const_cast<wchar_t*>(description));
    common::ComPtr<IErrorInfo> info;
    if (SUCCEEDED(create.QueryInterface(info.Put()))) {
      ::SetErrorInfo(0, info.Get());
    }
  }
  return hr == S_OK ? DISP_E_EXCEPTION : hr;
}

}  // namespace qm::com
