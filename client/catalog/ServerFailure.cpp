#include "client/catalog/ServerFailure.h"

#include "client/catalog/PathSpelling.h"
#include "common/Bstr.h"
#include "common/ComPtr.h"
#include "common/SystemMessage.h"
#include "text/Utf.h"

namespace mmcat {

std::string ToOneLine(const std::string& text) {
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
  qm::common::ComPtr<IErrorInfo> info;
  qm::common::UniqueBstr description;
  if (::GetErrorInfo(0, info.Put()) == S_OK) {
    info->GetDescription(description.Put());
  }
  if (description) {
    return {hr, SpellPathsIn(ToOneLine(qm::text::ToUtf8(qm::common::ViewOf(description.Get()))))};
  }
  const qm::common::UniqueLocalText text = qm::common::FormatSystemMessage(static_cast<DWORD>(hr));
  return {hr, text ? ToOneLine(qm::text::ToUtf8(text.Get())) : "Unknown error"};
}

}  // namespace mmcat
