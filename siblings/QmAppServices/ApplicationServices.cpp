#include "siblings/QmAppServices/ApplicationServices.h"

#include <memory>
#include <optional>
#include <utility>

#include "com/frame/ComServer.h"
#include "com/frame/DllPath.h"
#include "common/DllLifetime.h"
#include "common/ExclusiveLock.h"
#include "common/FileStamp.h"
#include "common/Path.h"
#include "common/SearchPath.h"
#include "common/SystemFolders.h"
#include "siblings/Gleaner/IniDocument.h"

namespace qm::siblings {

namespace {

common::WideString GetDllFolder() {
  return common::ParentFolder(com::DllPath(com::ComServer::Instance().DllInstance()));
}

common::WideString GetCommonModulesFolder() {
  const common::WideString common = common::GetProgramFolder(common::kCommonFiles);
  return common.empty() ? common : common::JoinPath(common, L"Merge Modules");
}

std::optional<common::WideString> ReadEnvironment(const wchar_t* variable) {
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
  return common::WideString(value);
}

/// Resolves a folder of the settings file. One that begins with a dot is relative to the folder of
/// that file.
common::WideString ResolveFolder(const common::WideString& folder) {
  const bool isRelative = !folder.empty() && folder.c_str()[0] == L'.';
  return isRelative ? common::ResolveFullPath(common::JoinPath(GetDllFolder(), folder)) : folder;
}

/// The same for folders separated by commas.
common::WideString ResolveFolders(const common::WideString& folders) {
  common::WideString all;
  for (const common::WideString& folder : common::SplitCommaList(folders)) {
    all += all.empty() ? L"" : L",";
    all += ResolveFolder(folder);
  }
  return all;
}

/// The settings file beside the DLL. Kept as long as the file has the same write time and size,
/// because the catalog asks once per module. Thread-safe.
class ServiceSettings {
 public:
  /// Returns the value of a key; nothing if the file or the key does not exist. Throws if the file
  /// cannot be read.
  std::optional<common::WideString> Find(const wchar_t* key) {
    const common::WideString path = common::JoinPath(GetDllFolder(), L"QmAppServices.ini");
    WIN32_FILE_ATTRIBUTE_DATA found;
    if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &found)) {
      return std::nullopt;
    }
    const auto stamp = common::FileStamp::From(found);
    {
      const common::ExclusiveLock lock(m_lock);
      if (m_document && m_stamp == stamp) {
        return FindIn(*m_document, key);
      }
    }
    std::shared_ptr<const IniDocument> document = IniDocument::Load(path);
    const common::ExclusiveLock lock(m_lock);
    m_document = std::move(document);
    m_stamp = stamp;
    return FindIn(*m_document, key);
  }

 private:
  static std::optional<common::WideString> FindIn(const IniDocument& document, const wchar_t* key) {
    const IniDocument::Section* const section = document.FindSection(L"Services");
    const IniDocument::Key* const found = section ? document.FindKey(*section, key) : nullptr;
    return found ? std::optional<common::WideString>(document.GetText(found->value)) : std::nullopt;
  }

  SRWLOCK m_lock = SRWLOCK_INIT;  ///< guards the members below, and lookups, which build indexes
  std::shared_ptr<const IniDocument> m_document;
  common::FileStamp m_stamp;
};

common::DllWide<ServiceSettings> theSettings;

std::optional<common::WideString> ReadSetting(const wchar_t* key) {
  return theSettings.Get([] { return new ServiceSettings; }).Find(key);
}

common::WideString ReadFolder(const wchar_t* variable, const wchar_t* key) {
  if (const auto value = ReadEnvironment(variable)) {
    return common::ExpandEnvironmentVariables(*value);
  }
  if (const auto value = ReadSetting(key)) {
    return ResolveFolder(common::ExpandEnvironmentVariables(*value));
  }
  return GetDllFolder();
}

/// Returns a search path without expanding its variables: the caller splits it and expands each
/// folder.
std::optional<common::WideString> SearchPath(const wchar_t* variable, const wchar_t* key) {
  if (auto value = ReadEnvironment(variable)) {
    return value;
  }
  const auto value = ReadSetting(key);
  return value ? std::optional<common::WideString>(ResolveFolders(*value)) : std::nullopt;
}

}  // namespace

HRESULT CApplicationServices::AnswerNotImplemented(BSTR* out) noexcept {
  return AnswerText(out, []() -> common::WideString { com::RaiseHResult(E_NOTIMPL); });
}

STDMETHODIMP CApplicationServices::get_GalleryRoot(BSTR* folder) {
  return AnswerText(folder, [] { return ReadFolder(L"QM_GALLERY_ROOT", L"GalleryRoot"); });
}

STDMETHODIMP CApplicationServices::get_FileIndexFolder(BSTR* folder) {
  return AnswerText(folder, [] { return ReadFolder(L"QM_FILE_INDEX_DIR", L"FileIndexDir"); });
}

STDMETHODIMP CApplicationServices::get_ModuleIndexFolder(BSTR* folder) {
  return AnswerText(folder, [] { return ReadFolder(L"QM_MODULE_INDEX_DIR", L"ModuleIndexDir"); });
}

STDMETHODIMP CApplicationServices::get_ModuleSearchPath(BSTR* path) {
  return AnswerText(path, [] {
    const auto value = SearchPath(L"QM_MODULE_PATH", L"ModulePath");
    return value ? *value : GetCommonModulesFolder();
  });
}

STDMETHODIMP CApplicationServices::get_DataFolder(BSTR* folder) {
  return AnswerText(folder, [] { return ReadFolder(L"QM_DATA_DIR", L"DataDir"); });
}

STDMETHODIMP CApplicationServices::get_UserModuleSearchPath(BSTR* path) {
  return AnswerText(path, [] {
    return SearchPath(L"QM_USER_MODULE_PATH", L"UserModulePath").value_or(common::WideString());
  });
}

}  // namespace qm::siblings
