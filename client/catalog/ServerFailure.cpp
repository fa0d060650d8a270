#include "client/catalog/ServerFailure.h"

#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/SystemMessage.h"
#include "text/Utf.h"

using qm::text::ToUtf8;

std::string OnOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c != '\r' && c != '\n') {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') {
    line.pop_back();
  }
  return line;
}

ServerFailure ServerFailure::Capture(HRESULT hr) {
  CComPtr<IErrorInfo> info;
  CUniqueBstr description;
  if (::GetErrorInfo(0, info.Put()) == S_OK) {
    info->GetDescription(description.Put());
  }
  if (description) {
    return {hr, OnOneLine(ToUtf8(ViewOf(description.Get())))};
  }
  const CUniqueLocalText text = FormatSystemText(static_cast<DWORD>(hr));
  return {hr, text ? OnOneLine(ToUtf8(text.Get())) : "Unknown error"};
}
