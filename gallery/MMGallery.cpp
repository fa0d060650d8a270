#include "gallery/MMGallery.h"

#include <shlwapi.h>

#include <utility>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "common/Bstr.h"
#include "common/Path.h"
#include "common/SearchPath.h"
#include "gallery/CompareVersions.h"
#include "gallery/IniAccess.h"

namespace qm::gallery {

namespace {

constexpr wchar_t kModuleSection[] = L"MergeModule";
constexpr wchar_t kGalleryFolder[] = L"ObjectGallery";

bool IsFile(const common::WideString& path) noexcept {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// Returns whether a name joined to a folder stays in that folder. Names may come from a module.
bool IsPlainFileName(std::wstring_view name) noexcept {
  return name.find_first_of(L"\\/:") == std::wstring_view::npos;
}

/// Returns whether a download file exists below the gallery root or below the folder of the
/// descriptions.
bool DownloadExists(const common::WideString& root, const common::WideString& location) {
  return !root.empty() &&
         (common::PathExists(common::JoinPath(root, location)) ||
          common::PathExists(common::JoinPath(common::JoinPath(root, kGalleryFolder), location)));
}

long ParseLong(const common::WideString& text) noexcept { return ::_wtol(text.c_str()); }

/// The BSTR for an optional out parameter. It is allocated at construction and handed over by
/// HandOver, which cannot fail, so that a call sets all of its outs or none.
class OptionalOutText {
 public:
  OptionalOutText(BSTR* out, const common::WideString& text) : m_out(out) {
    if (out) {
      m_text = com::AllocateBstr(text);
    }
  }
  void HandOver() noexcept {
    if (m_out) {
      *m_out = m_text.Release();
    }
  }

 private:
  BSTR* m_out;
  common::UniqueBstr m_text;
};

template <class... Outs>
void HandOverAll(Outs&&... outs) noexcept {
  (outs.HandOver(), ...);
}

}  // namespace

HRESULT CMMGallery::GetPresent(VARIANT_BOOL* result) {
  EnsureChecked();
  *result = m_bPresent;
  return S_OK;
}

HRESULT CMMGallery::GetNeedsDownload(VARIANT_BOOL* result) {
  EnsureChecked();
  *result = m_bNeedsDownload;
  return S_OK;
}

HRESULT CMMGallery::GetLocalPath(BSTR* result) {
  EnsureChecked();
  *result = com::AllocateBstr(m_strLocalPath).Release();
  return S_OK;
}

void CMMGallery::SetNameAndVersion(const common::WideString& name,
                                   const common::WideString& version) {
  m_strName = name;
  m_strLocalVersion = version;
}

common::WideString CMMGallery::GetGalleryRoot() {
  return GetServiceText(*CreateApplicationServices(), &IApplicationServices::get_GalleryRoot);
}

/// The path of the description; empty if no gallery is configured.
common::WideString CMMGallery::GetIniPath() const {
  const common::WideString root = GetGalleryRoot();
  if (root.empty()) {
    return {};  // the joined path would be relative to the current folder
  }
  return common::JoinPath(common::JoinPath(root, kGalleryFolder), m_strName) + L".ini";
}

common::ComPtr<IIniReader> CMMGallery::GetIni() {
  const com::ScopedGateEntry pass;
  if (!m_pIni.Get() && IsPlainFileName(m_strName)) {
    com::ReleaseQueuedReferences();  // readers of this thread that another thread has replaced
    // A description that cannot be opened is treated as missing.
    com::SwallowFailures([&] {
      const common::WideString path = GetIniPath();
      if (IsFile(path)) {
        const common::UniqueBstr text = com::AllocateBstr(path);
        const common::ComPtr<IIniReader> reader = CreateIniReader();
        const HRESULT loaded = reader->Load(text.Get());
        // A reader that failed to load does not replace that of another apartment.
        if (SUCCEEDED(loaded) || !m_pIni.IsSet()) {
          m_pIni.Set(reader);
        }
        com::RaiseIfFailed(loaded);
      }
    });
  }
  return m_pIni.Get();
}

common::ComPtr<IIniSection> CMMGallery::GetSection(const common::WideString& section) {
  const common::ComPtr<IIniReader> ini = GetIni();
  return ini ? FindSection(*ini, section) : nullptr;
}

common::WideString CMMGallery::ReadValue(const common::WideString& section,
                                         const common::WideString& key) {
  common::WideString value;
  FindValue(section, key, value);
  return value;
}

/// Reads the value of a key. Returns false and leaves `value` alone if the section or the key is
/// missing.
bool CMMGallery::FindValue(const common::WideString& section, const common::WideString& key,
                           common::WideString& value) {
  const common::ComPtr<IIniSection> found = GetSection(section);
  const common::ComPtr<IIniKey> entry = found ? FindKey(*GetKeys(*found), key) : nullptr;
  if (!entry) {
    return false;
  }
  common::UniqueBstr text;
  if (FAILED(entry->get_Value(text.Put()))) {
    ::SetErrorInfo(0, nullptr);  // only here does a failure of the reader mean an empty value
  }
  value = common::ViewOf(text.Get());
  return true;
}

common::WideString CMMGallery::ReadModuleValue(const wchar_t* key) {
  return ReadValue(kModuleSection, key);
}

common::WideString CMMGallery::GetAuthor() { return ReadModuleValue(L"Author"); }

common::WideString CMMGallery::GetComments() { return ReadModuleValue(L"Comments"); }

common::WideString CMMGallery::GetSubject() { return ReadModuleValue(L"Subject"); }

common::WideString CMMGallery::GetModuleID() { return ReadModuleValue(L"ModuleID"); }

common::WideString CMMGallery::GetVersion() { return ReadModuleValue(L"Version"); }

long CMMGallery::GetLanguage() { return ParseLong(ReadModuleValue(L"Language")); }

bool CMMGallery::HasFileName() { return !ReadModuleValue(L"FileName").empty(); }

common::WideString CMMGallery::ResolveLocalPath() {
  const common::WideString fileName = ReadModuleValue(L"FileName");
  // Only the presence of a location matters; the file is looked for in the search folders.
  if (ReadValue(fileName, L"Location").empty()) {
    return {};
  }
  const common::WideString searchPath =
      GetServiceText(*CreateApplicationServices(), &IApplicationServices::get_ModuleSearchPath);
  for (const common::WideString& folder : common::ExpandSearchPath(searchPath)) {
    common::WideString path = common::JoinPath(folder, fileName);
    if (::PathFileExistsW(path.c_str())) {
      return path;
    }
  }
  return {};
}

long CMMGallery::GetItemCount(const wchar_t* list) {
  const common::ComPtr<IIniSection> section = GetSection(list);
  return section ? GetKeyCount(*GetKeys(*section)) : 0;
}

long CMMGallery::GetDependencyCount() { return GetItemCount(L"Dependency"); }

long CMMGallery::GetExclusionCount() { return GetItemCount(L"Exclusions"); }

long CMMGallery::GetFileCount() { return GetItemCount(L"Files"); }

long CMMGallery::GetDownloadFileCount() { return GetItemCount(L"DownloadFiles"); }

/// Reads the name of an item, which is also the name of its section, from its list. Returns false
/// if the list or the item's key is missing.
bool CMMGallery::ReadItemName(const wchar_t* list, long index, common::WideString& item) {
  return FindValue(list, common::WideString::Format(L"Key%d", static_cast<int>(index + 1)), item);
}

void CMMGallery::GetDependency(long index, BSTR* moduleId, BSTR* version, long* language) {
  *language = 0;
  common::WideString item;
  if (ReadItemName(L"Dependency", index, item)) {
    OptionalOutText id(moduleId, item);
    OptionalOutText versionOut(version, ReadValue(item, L"Version"));
    *language = ParseLong(ReadValue(item, L"Language"));
    HandOverAll(id, versionOut);
  }
}

void CMMGallery::GetExclusion(long index, BSTR* moduleId, BSTR* minVersion, BSTR* maxVersion,
                              long* language) {
  *language = 0;
  common::WideString item;
  if (ReadItemName(L"Exclusions", index, item)) {
    OptionalOutText id(moduleId, item);
    OptionalOutText minimum(minVersion, ReadValue(item, L"ExcludedMinVersion"));
    OptionalOutText maximum(maxVersion, ReadValue(item, L"ExcludedMaxVersion"));
    *language = ParseLong(ReadValue(item, L"ExcludedLanguage"));
    HandOverAll(id, minimum, maximum);
  }
}

void CMMGallery::GetFile(long index, BSTR* fileKey, BSTR* fileName, BSTR* version, long* fileSize,
                         long* language) {
  *fileSize = 0;
  *language = 0;
  common::WideString item;
  if (ReadItemName(L"Files", index, item)) {
    OptionalOutText key(fileKey, item);
    OptionalOutText name(fileName, ReadValue(item, L"FileName"));
    OptionalOutText versionOut(version, ReadValue(item, L"Version"));
    const long size = ParseLong(ReadValue(item, L"FileSize"));
    *language = ParseLong(ReadValue(item, L"Language"));
    *fileSize = size;
    HandOverAll(key, name, versionOut);
  }
}

void CMMGallery::GetDownloadFile(long index, BSTR* location, BSTR* mediaLocation,
                                 BSTR* internetLocation, long* fileSize, BSTR* checkSum) {
  *fileSize = 0;
  common::WideString item;
  if (ReadItemName(L"DownloadFiles", index, item)) {
    OptionalOutText place(location, ReadValue(item, L"Location"));
    OptionalOutText media(mediaLocation, ReadValue(item, L"MediaLocation"));
    OptionalOutText internet(internetLocation, ReadValue(item, L"InternetLocation"));
    const long size = ParseLong(ReadValue(item, L"FileSize"));
    OptionalOutText sum(checkSum, ReadValue(item, L"CheckSum"));
    *fileSize = size;
    HandOverAll(place, media, internet, sum);
  }
}

void CMMGallery::EnsureChecked() {
  if (m_bChecked) {
    return;
  }
  const com::ScopedGateEntry pass;
  if (!m_bChecked) {
    CheckPresence();
    m_bChecked = true;  // not set after a failure, so that the next call checks again
  }
}

void CMMGallery::CheckPresence() {
  if (!HasFileName()) {
    return;
  }
  const common::WideString root = GetGalleryRoot();
  const bool isOutdated = CompareVersions(GetVersion(), m_strLocalVersion) > 0;
  common::WideString path = ResolveLocalPath();
  const bool isPresent = !path.empty() && common::PathExists(path) && AreDownloadFilesPresent(root);
  // Without a local file, there is nothing to update, so a newer version in the gallery does not
  // matter. The members are set only after everything was read, so that a failure changes none of
  // them.
  const bool needsDownload = !path.empty() && (!isPresent || isOutdated);
  m_strLocalPath = std::move(path);
  m_bPresent = isPresent ? VARIANT_TRUE : VARIANT_FALSE;
  m_bNeedsDownload = needsDownload ? VARIANT_TRUE : VARIANT_FALSE;
}

/// Checks the download files by position, so that gaps in the numbering of their keys do not
/// matter.
bool CMMGallery::AreDownloadFilesPresent(const common::WideString& root) {
  const common::ComPtr<IIniSection> section = GetSection(L"DownloadFiles");
  if (!section) {
    return true;
  }
  const common::ComPtr<IIniKeys> keys = GetKeys(*section);
  const long count = GetKeyCount(*keys);
  for (long position = 1; position <= count; ++position) {
    const common::ComPtr<IIniKey> key = FindKey(*keys, position);
    const common::WideString item = key ? GetKeyValue(*key) : common::WideString();
    if (!DownloadExists(root, ReadValue(item, L"Location"))) {
      return false;
    }
  }
  return true;
}

}  // namespace qm::gallery
