#include "com/error/com_exception.h"

#include <windows.h>

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/SystemMessage.h"

namespace qm {

com_exception::com_exception(HRESULT failure) : hr(failure) {
  common::ComPtr<IErrorInfo> info;
  if (::GetErrorInfo(0, info.Put()) == S_OK && info) {
    common::UniqueBstr text;
    info->GetDescription(text.Put());
    description = common::ViewOf(text.Get());
    info->GetGUID(&iid);
    info->GetSource(text.Put());
    source = common::ViewOf(text.Get());
    if (FAILED(::CLSIDFromProgID(source.c_str(), &clsid))) {
      clsid = GUID_NULL;
    }
    return;
  }
  const common::UniqueLocalText text = common::FormatSystemMessage(static_cast<DWORD>(failure));
  description = text ? text.Get() : L"Unknown error";
}

com_exception::com_exception(HRESULT failure, common::WideString text)
    : hr(failure), description(std::move(text)) {}

}  // namespace qm
