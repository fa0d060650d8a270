#include "client/catalog/CatalogSettings.h"

#include <windows.h>

#include "client/catalog/ServerFailure.h"
#include "client/terminal/Report.h"
#include "common/FolderFiles.h"
#include "common/Path.h"
#include "common/SystemMessage.h"
#include "text/Utf.h"

using qm::text::ToUtf8;
using qm::text::ToWide;

namespace {

/// Sets a variable of the environment. To the application services, it takes precedence over their
/// settings file.
void SetVariable(const wchar_t* name, const CWideString& value) {
  Check(::SetEnvironmentVariableW(name, value.c_str()) ? S_OK
                                                       : HRESULT_FROM_WIN32(::GetLastError()));
}

/// The system's text for an error code, on one line.
std::string SystemSentence(DWORD code) {
  const CUniqueLocalText text = FormatSystemText(code);
  const std::string sentence = text ? ToUtf8(text.Get()) : "error " + std::to_string(code);
  return sentence.substr(0, sentence.find_last_not_of(" \r\n") + 1);
}

/// The full path of the folder in a setting; empty if the setting is missing or empty. Prints a
/// remark if the folder cannot be listed.
CWideString FullFolder(const std::optional<std::string>& folder) {
  if (!folder || folder->empty()) {
    return {};
  }
  CWideString path = FullPath(ToWide(*folder));
  const DWORD code = TryToList(path);
  const FolderListing listing = ListingThatEndedWith(code);
  if (listing == FolderListing::Missing) {
    PrintRemark(ToUtf8(path) + ": folder not found");
  } else if (listing == FolderListing::Unavailable) {
    PrintRemark(ToUtf8(path) + ": cannot list the folder: " + SystemSentence(code));
  }
  return path;
}

}  // namespace

std::string WhyNoSearchFolder(const std::string& folder) {
  if (folder.empty()) {
    return "the folder is empty";  // probably an unset shell variable
  }
  const std::string path = ToUtf8(FullPath(ToWide(folder)));
  return path.find_first_of(",%") == std::string::npos
             ? ""
             : path + ": a search folder must not contain a comma or a percent sign";
}

void Apply(const CatalogSettings& settings) {
  if (settings.folders.empty() && !settings.galleryRoot && !settings.indexFolder &&
      !settings.dataFolder) {
    return;
  }
  CWideString searchPath;
  for (const std::string& folder : settings.folders) {
    searchPath += searchPath.empty() ? L"" : L",";
    searchPath += FullFolder(folder);
  }
  SetVariable(L"QM_MODULE_PATH", searchPath);
  SetVariable(L"QM_USER_MODULE_PATH", {});
  SetVariable(L"QM_GALLERY_ROOT", FullFolder(settings.galleryRoot));
  const CWideString indexFolder = FullFolder(settings.indexFolder);
  SetVariable(L"QM_FILE_INDEX_DIR", indexFolder);
  SetVariable(L"QM_MODULE_INDEX_DIR", indexFolder);
  SetVariable(L"QM_DATA_DIR", FullFolder(settings.dataFolder));
}
