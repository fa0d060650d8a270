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

namespace {

/// Returns a text for a code that some systems do not describe.
const char* FindText(HRESULT hr) noexcept {
  switch (hr) {
    case REGDB_E_CLASSNOTREG:
      return "The class is neither in a manifest nor registered.";
    case CO_E_CLASSSTRING:
      return "No class with this name is in a manifest or registered.";
    case CO_E_DLLNOTFOUND:
      return "The DLL of the class was not found.";
    case CO_E_ERRORINDLL:
      return "The DLL of the class is damaged.";
    case CLASS_E_CLASSNOTAVAILABLE:
      return "The DLL does not have this class.";
    case TYPE_E_LIBNOTREGISTERED:
      return "The type library is not registered.";
    case TYPE_E_CANTLOADLIBRARY:
      return "The type library cannot be loaded.";
    default:
      return "Unknown error";
  }
}

}  // namespace

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
  return {hr, text ? ToOneLine(qm::text::ToUtf8(text.Get())) : FindText(hr)};
}

std::string ServerUnavailable::DescribeRemedy() {
  return "Quillmark.MergeModules.manifest and the DLLs of the package belong in the folder of "
         "mmcat.exe. Without the manifest, the DLLs must be registered (regsvr32).";
}

}  // namespace mmcat
