#include "client/catalog/CatalogSettings.h"

#include <windows.h>

#include "client/catalog/PathSpelling.h"
#include "client/catalog/ServerFailure.h"
#include "client/terminal/Report.h"
#include "common/FolderFiles.h"
#include "common/Path.h"
#include "common/SystemMessage.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

/// Sets a variable of the environment. To the application services, it takes precedence over their
/// settings file.
void SetVariable(const wchar_t* name, const qm::common::WideString& value) {
  ThrowIfFailed(
      ::SetEnvironmentVariableW(name, value.c_str()) ? S_OK : HRESULT_FROM_WIN32(::GetLastError()));
}

/// The system's text for an error code, on one line.
std::string FormatSystemError(DWORD code) {
  const qm::common::UniqueLocalText text = qm::common::FormatSystemMessage(code);
  const std::string sentence =
      text ? qm::text::ToUtf8(text.Get()) : "error " + std::to_string(code);
  return sentence.substr(0, sentence.find_last_not_of(" \r\n") + 1);
}

/// The full path of the folder in a setting; empty if the setting is missing or empty. Prints a
/// remark if the folder cannot be listed.
qm::common::WideString ResolveFolder(const std::optional<std::string>& folder) {
  if (!folder || folder->empty()) {
    return {};
  }
  qm::common::WideString path = qm::common::ResolveFullPath(ToSystemPath(*folder));
  const DWORD code = qm::common::ProbeFolder(path);
  const qm::common::ListingOutcome listing = qm::common::ClassifyListing(code);
  if (listing == qm::common::ListingOutcome::Missing) {
    PrintRemark(SpellPath(qm::text::ToUtf8(path)) + ": folder not found");
  } else if (listing == qm::common::ListingOutcome::Unavailable) {
    PrintRemark(SpellPath(qm::text::ToUtf8(path)) +
                ": cannot list the folder: " + FormatSystemError(code));
  }
  return path;
}

}  // namespace

std::string ValidateSearchFolder(const std::string& folder) {
  if (folder.empty()) {
    return "the folder is empty";  // probably an unset shell variable
  }
  const std::string path =
      SpellPath(qm::text::ToUtf8(qm::common::ResolveFullPath(ToSystemPath(folder))));
  return path.find_first_of(",%") == std::string::npos
             ? ""
             : path + ": a search folder must not contain a comma or a percent sign";
}

void ApplyCatalogSettings(const CatalogSettings& settings) {
  if (settings.folders.empty() && !settings.galleryRoot && !settings.indexFolder &&
      !settings.dataFolder) {
    return;
  }
  qm::common::WideString searchPath;
  for (const std::string& folder : settings.folders) {
    searchPath += searchPath.empty() ? L"" : L",";
    searchPath += ResolveFolder(folder);
  }
  SetVariable(L"QM_MODULE_PATH", searchPath);
  SetVariable(L"QM_USER_MODULE_PATH", {});
  SetVariable(L"QM_GALLERY_ROOT", ResolveFolder(settings.galleryRoot));
  const qm::common::WideString indexFolder = ResolveFolder(settings.indexFolder);
  SetVariable(L"QM_FILE_INDEX_DIR", indexFolder);
  SetVariable(L"QM_MODULE_INDEX_DIR", indexFolder);
  SetVariable(L"QM_DATA_DIR", ResolveFolder(settings.dataFolder));
}

}  // namespace mmcat
