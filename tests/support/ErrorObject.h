#pragma once

#include <windows.h>

#include "common/ComPtr.h"

namespace qm::tests {

/// Sets this thread's error object.
inline void LeaveErrorObject(const wchar_t* description, const wchar_t* source = L"",
                             REFIID iid = GUID_NULL) {
  common::ComPtr<ICreateErrorInfo> create;
  common::ComPtr<IErrorInfo> info;
  ::CreateErrorInfo(create.Put());
  create->SetDescription(const_cast<wchar_t*>(description));
  create->SetSource(const_cast<wchar_t*>(source));
  create->SetGUID(iid);
  create.QueryInterface(info.Put());
  ::SetErrorInfo(0, info.Get());
}

}  // namespace qm::tests
