#include "client/catalog/CatalogSettings.h"

#include <windows.h>

#include <iterator>
#include <stdexcept>

#include "client/catalog/FolderTree.h"
#include "client/catalog/PathSpelling.h"
#include "client/catalog/ServerFailure.h"
#include "client/catalog/SystemError.h"
#include "common/FolderFiles.h"
#include "common/Path.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

bool g_isReplaced = false;

/// Sets an environment variable. For the application services, it takes precedence over their
/// settings file.
void SetVariable(const wchar_t* name, const qm::common::WideString& value) {
  ThrowIfFailed(
      ::SetEnvironmentVariableW(name, value.c_str()) ? S_OK : HRESULT_FROM_WIN32(::GetLastError()));
}

/// The full path of a folder that the user gave.
qm::common::WideString ResolveFolder(const std::string& folder) {
  return qm::common::ResolveFullPath(ToSystemPath(folder));
}

qm::common::WideString ResolveFolder(const std::optional<std::string>& folder) {
  return folder ? ResolveFolder(*folder) : qm::common::WideString();
}

/// A full path as the user spells it.
std::string Spell(const qm::common::WideString& path) { return SpellPath(qm::text::ToUtf8(path)); }

/// Adds the folders with modules at and below a search folder.
void AddFolderTree(const qm::common::WideString& folder, ModuleFolders& all) {
  ModuleFolders found = FindModuleFolders(folder);
  std::move(found.folders.begin(), found.folders.end(), std::back_inserter(all.folders));
  std::move(found.failures.begin(), found.failures.end(), std::back_inserter(all.failures));
}

/// Adds a search folder. If it cannot be listed, that is a failure.
void AddSearchFolder(const qm::common::WideString& folder, ModuleFolders& all) {
  all.folders.push_back(folder);
  const DWORD code = qm::common::ProbeFolder(folder);
  if (qm::common::ClassifyListing(code) != qm::common::ListingOutcome::Complete) {
    all.failures.push_back({Spell(folder), "", static_cast<HRESULT>(HRESULT_FROM_WIN32(code)),
                            "The folder cannot be listed: " + FormatSystemError(code),
                            FailureOf::Folder});
  } else if (const auto below = FindModulesBelow(folder)) {
    PrintHint(Spell(folder) + ": folders below it have modules too, such as " + Spell(*below) +
              "; --recursive includes them");
  }
}

qm::common::WideString JoinSearchPath(const std::vector<qm::common::WideString>& folders) {
  constexpr size_t kLongest = 32766;  // characters of an environment variable
  std::wstring path;
  for (const qm::common::WideString& folder : folders) {
    path += path.empty() ? L"" : L",";
    path += folder;
  }
  if (path.size() > kLongest) {
    throw std::length_error(std::to_string(folders.size()) +
                            " folders with modules are more than a search path can name; search "
                            "them in several runs");
  }
  return path;
}

}  // namespace

std::string ValidateFolder(const std::string& folder) {
  if (folder.empty()) {
    return "the folder is empty";  // probably an unset shell variable
  }
  const qm::common::WideString path = ResolveFolder(folder);
  const DWORD attributes = ::GetFileAttributesW(qm::common::ToExtendedPath(path).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? ""
                                                 : Spell(path) + ": this is a file, not a folder";
  }
  const DWORD code = ::GetLastError();
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND
             ? Spell(path) + ": folder not found"
             : Spell(path) + ": " + FormatSystemError(code);
}

std::string ValidateSearchFolder(const std::string& folder) {
  std::string problem = ValidateFolder(folder);
  if (!problem.empty()) {
    return problem;
  }
  const qm::common::WideString path = ResolveFolder(folder);
  return FitsSearchPath(path)
             ? ""
             : Spell(path) + ": a search folder must not contain a comma or a percent sign";
}

std::vector<FileFailure> ApplyCatalogSettings(const CatalogSettings& settings) {
  if (settings.folders.empty() && !settings.galleryRoot && !settings.indexFolder &&
      !settings.dataFolder) {
    return {};
  }
  g_isReplaced = true;
  ModuleFolders searched;
  for (const std::string& folder : settings.folders) {
    const auto add = settings.isRecursive ? AddFolderTree : AddSearchFolder;
    add(ResolveFolder(folder), searched);
  }
  SetVariable(L"QM_MODULE_PATH", JoinSearchPath(searched.folders));
  SetVariable(L"QM_USER_MODULE_PATH", {});
  SetVariable(L"QM_GALLERY_ROOT", ResolveFolder(settings.galleryRoot));
  const qm::common::WideString indexFolder = ResolveFolder(settings.indexFolder);
  SetVariable(L"QM_FILE_INDEX_DIR", indexFolder);
  SetVariable(L"QM_MODULE_INDEX_DIR", indexFolder);
  SetVariable(L"QM_DATA_DIR", ResolveFolder(settings.dataFolder));
  return std::move(searched.failures);
}

bool IsCatalogReplaced() noexcept { return g_isReplaced; }

}  // namespace mmcat
