#include "siblings/QmAppServices/ApplicationServices.h"

#include <optional>

#include "com/frame/ComServer.h"
#include "com/frame/DllPath.h"
#include "common/Path.h"
#include "common/SearchPath.h"
#include "common/SystemFolders.h"
#include "siblings/Gleaner/IniDocument.h"

namespace {

CWideString OwnFolder() { return FolderOf(ModulePath(CComModule::Instance().ModuleInstance())); }

CWideString CommonModules() {
  const CWideString common = GetProgramFolder(kCommonFiles);
  return common.empty() ? common : JoinPath(common, L"Merge Modules");
}

std::optional<CWideString> FromEnvironment(const wchar_t* variable) {
  std::wstring value;
  // The size includes the terminator, so it is 0 only if the variable is not set.
  DWORD size = ::GetEnvironmentVariableW(variable, nullptr, 0);
  if (size == 0) {
    return std::nullopt;
  }
  while (size > value.size()) {
    value.resize(size);
    size = ::GetEnvironmentVariableW(variable, value.data(), static_cast<DWORD>(value.size()));
  }
  value.resize(size);
  return CWideString(value);
}

/// Resolves a folder of the settings file. One that begins with a dot is relative to the folder of
/// that file.
CWideString FromOwnFolder(const CWideString& folder) {
  const bool isRelative = !folder.empty() && folder.c_str()[0] == L'.';
  return isRelative ? FullPath(JoinPath(OwnFolder(), folder)) : folder;
}

/// The same for folders separated by commas.
CWideString AllFromOwnFolder(const CWideString& folders) {
  CWideString all;
  for (const CWideString& folder : SplitCommaList(folders)) {
    all += all.empty() ? L"" : L",";
    all += FromOwnFolder(folder);
  }
  return all;
}

std::optional<CWideString> FromSettingsFile(const wchar_t* key) {
  const CWideString path = JoinPath(OwnFolder(), L"QmAppServices.ini");
  if (::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
    return std::nullopt;
  }
  const std::shared_ptr<const CIniFile> file = CIniFile::Load(path);
  const CIniFile::Section* const section = file->FindSection(L"Services");
  const CIniFile::Key* const found = section ? file->FindKey(*section, key) : nullptr;
  return found ? std::optional<CWideString>(file->TextAt(found->value)) : std::nullopt;
}

CWideString Folder(const wchar_t* variable, const wchar_t* key) {
  if (const auto value = FromEnvironment(variable)) {
    return ExpandEnvironmentText(*value);
  }
  if (const auto value = FromSettingsFile(key)) {
    return FromOwnFolder(ExpandEnvironmentText(*value));
  }
  return OwnFolder();
}

/// Returns a search path without expanding its variables: the caller splits it and expands each
/// folder.
std::optional<CWideString> SearchPath(const wchar_t* variable, const wchar_t* key) {
  if (auto value = FromEnvironment(variable)) {
    return value;
  }
  const auto value = FromSettingsFile(key);
  return value ? std::optional<CWideString>(AllFromOwnFolder(*value)) : std::nullopt;
}

}  // namespace

HRESULT CApplicationServices::NotImplemented(BSTR* out) noexcept {
  return AnswerText(out, []() -> CWideString { RaiseHResult(E_NOTIMPL); });
}

STDMETHODIMP CApplicationServices::get_GalleryRoot(BSTR* folder) {
  return AnswerText(folder, [] { return Folder(L"QM_GALLERY_ROOT", L"GalleryRoot"); });
}

STDMETHODIMP CApplicationServices::get_FileIndexFolder(BSTR* folder) {
  return AnswerText(folder, [] { return Folder(L"QM_FILE_INDEX_DIR", L"FileIndexDir"); });
}

STDMETHODIMP CApplicationServices::get_ModuleIndexFolder(BSTR* folder) {
  return AnswerText(folder, [] { return Folder(L"QM_MODULE_INDEX_DIR", L"ModuleIndexDir"); });
}

STDMETHODIMP CApplicationServices::get_ModuleSearchPath(BSTR* path) {
  return AnswerText(path, [] {
    const auto value = SearchPath(L"QM_MODULE_PATH", L"ModulePath");
    return value ? *value : CommonModules();
  });
}

STDMETHODIMP CApplicationServices::get_DataFolder(BSTR* folder) {
  return AnswerText(folder, [] { return Folder(L"QM_DATA_DIR", L"DataDir"); });
}

STDMETHODIMP CApplicationServices::get_UserModuleSearchPath(BSTR* path) {
  return AnswerText(path, [] {
    return SearchPath(L"QM_USER_MODULE_PATH", L"UserModulePath").value_or(CWideString());
  });
}
