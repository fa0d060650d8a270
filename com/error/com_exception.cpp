#include "com/error/com_exception.h"

#include <windows.h>

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/SystemMessage.h"

com_exception::com_exception(HRESULT failure) : hr(failure) {
  CComPtr<IErrorInfo> info;
  if (::GetErrorInfo(0, info.Put()) == S_OK && info) {
    CUniqueBstr text;
    info->GetDescription(text.Put());
    description = ViewOf(text.Get());
    info->GetGUID(&iid);
    info->GetSource(text.Put());
    source = ViewOf(text.Get());
    if (FAILED(::CLSIDFromProgID(source.c_str(), &clsid))) {
      clsid = GUID_NULL;
    }
    return;
  }
  const CUniqueLocalText text = FormatSystemText(static_cast<DWORD>(failure));
  description = text ? text.Get() : L"Unknown error";
}

com_exception::com_exception(HRESULT failure, CWideString text)
    : hr(failure), description(std::move(text)) {}
