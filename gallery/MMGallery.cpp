#include "gallery/MMGallery.h"

#include <shlwapi.h>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "common/Bstr.h"
#include "common/Path.h"
#include "common/SearchPath.h"
#include "gallery/CompareVersions.h"
#include "gallery/IniAccess.h"

namespace {

constexpr wchar_t kModuleSection[] = L"MergeModule";
constexpr wchar_t kGalleryFolder[] = L"ObjectGallery";

bool IsFile(const CWideString& path) noexcept {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// Whether a name joined to a folder stays in that folder. Names may come from a module.
bool IsPlainFileName(std::wstring_view name) noexcept {
  return name.find_first_of(L"\\/:") == std::wstring_view::npos;
}

/// Whether a download file exists below the gallery root or below the folder of the descriptions.
bool IsDownloaded(const CWideString& root, const CWideString& location) {
  return !root.empty() && (PathExists(JoinPath(root, location)) ||
                           PathExists(JoinPath(JoinPath(root, kGalleryFolder), location)));
}

long ToLong(const CWideString& text) noexcept { return ::_wtol(text.c_str()); }

/// The BSTR for an optional out parameter. It is allocated at construction and handed over by Give,
/// which cannot fail, so that a call sets all of its outs or none.
class WantedText {
 public:
  WantedText(BSTR* out, const CWideString& text) : m_out(out) {
    if (out) {
      m_text = MakeBstr(text);
    }
  }
  void Give() noexcept {
    if (m_out) {
      *m_out = m_text.Release();
    }
  }

 private:
  BSTR* m_out;
  CUniqueBstr m_text;
};

template <class... Outs>
void GiveAll(Outs&&... outs) noexcept {
  (outs.Give(), ...);
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
  *result = MakeBstr(m_strLocalPath).Release();
  return S_OK;
}

void CMMGallery::SetNameAndVersion(const CWideString& name, const CWideString& version) {
  m_strName = name;
  m_strLocalVersion = version;
}

CWideString CMMGallery::GetGalleryRoot() {
  return AskServices(*CreateApplicationServices(), &IApplicationServices::get_GalleryRoot);
}

/// The path of the description; empty if no gallery is configured.
CWideString CMMGallery::GetIniPath() const {
  const CWideString root = GetGalleryRoot();
  if (root.empty()) {
    return {};  // the joined path would be relative to the current folder
  }
  return JoinPath(JoinPath(root, kGalleryFolder), m_strName) + L".ini";
}

CComPtr<IIniReader> CMMGallery::GetIni() {
  const CGatePass pass;
  if (!m_pIni.Get() && IsPlainFileName(m_strName)) {
    ReleaseReturnedReferences();  // readers of this thread that another one has replaced
    // A description that cannot be opened counts as missing.
    DropFailures([&] {
      const CWideString path = GetIniPath();
      if (IsFile(path)) {
        const CUniqueBstr text = MakeBstr(path);
        const CComPtr<IIniReader> reader = CreateIniReader();
        const HRESULT loaded = reader->Load(text.Get());
        // A reader that failed to load does not replace that of another apartment.
        if (SUCCEEDED(loaded) || !m_pIni.IsSet()) {
          m_pIni.Set(reader);
        }
        RaiseIfFailed(loaded);
      }
    });
  }
  return m_pIni.Get();
}

CComPtr<IIniSection> CMMGallery::GetSection(const CWideString& section) {
  const CComPtr<IIniReader> ini = GetIni();
  return ini ? FindSection(*ini, section) : nullptr;
}

CWideString CMMGallery::ReadValue(const CWideString& section, const CWideString& key) {
  CWideString value;
  FindValue(section, key, value);
  return value;
}

/// Reads the value of a key. Returns false and leaves `value` alone if the section or the key is
/// missing.
bool CMMGallery::FindValue(const CWideString& section, const CWideString& key, CWideString& value) {
  const CComPtr<IIniSection> found = GetSection(section);
  const CComPtr<IIniKey> entry = found ? FindKey(*KeysOf(*found), key) : nullptr;
  if (!entry) {
    return false;
  }
  CUniqueBstr text;
  if (FAILED(entry->get_Value(text.Put()))) {
    ::SetErrorInfo(0, nullptr);  // only here a failure of the reader counts as an empty value
  }
  value = ViewOf(text.Get());
  return true;
}

CWideString CMMGallery::ReadModuleValue(const wchar_t* key) {
  return ReadValue(kModuleSection, key);
}

CWideString CMMGallery::GetAuthor() { return ReadModuleValue(L"Author"); }

CWideString CMMGallery::GetComments() { return ReadModuleValue(L"Comments"); }

CWideString CMMGallery::GetSubject() { return ReadModuleValue(L"Subject"); }

CWideString CMMGallery::GetModuleID() { return ReadModuleValue(L"ModuleID"); }

CWideString CMMGallery::GetVersion() { return ReadModuleValue(L"Version"); }

long CMMGallery::GetLanguage() { return ToLong(ReadModuleValue(L"Language")); }

bool CMMGallery::HasFileName() { return !ReadModuleValue(L"FileName").empty(); }

CWideString CMMGallery::ResolveLocalPath() {
  const CWideString fileName = ReadModuleValue(L"FileName");
  // Only the presence of a location matters; the file is looked for in the search folders.
  if (ReadValue(fileName, L"Location").empty()) {
    return {};
  }
  const CWideString searchPath =
      AskServices(*CreateApplicationServices(), &IApplicationServices::get_ModuleSearchPath);
  for (const CWideString& folder : ExpandSearchPath(searchPath)) {
    CWideString path = JoinPath(folder, fileName);
    if (::PathFileExistsW(path.c_str())) {
      return path;
    }
  }
  return {};
}

long CMMGallery::CountItems(const wchar_t* list) {
  const CComPtr<IIniSection> section = GetSection(list);
  return section ? CountOf(*KeysOf(*section)) : 0;
}

long CMMGallery::GetDependencyCount() { return CountItems(L"Dependency"); }

long CMMGallery::GetExclusionCount() { return CountItems(L"Exclusions"); }

long CMMGallery::GetFileCount() { return CountItems(L"Files"); }

long CMMGallery::GetDownloadFileCount() { return CountItems(L"DownloadFiles"); }

/// Reads the name of an item, which is also the name of its section, from its list. Returns false
/// if the list or the item's key is missing.
bool CMMGallery::FindItem(const wchar_t* list, long index, CWideString& item) {
  return FindValue(list, CWideString::Format(L"Key%d", static_cast<int>(index + 1)), item);
}

void CMMGallery::GetDependency(long index, BSTR* moduleId, BSTR* version, long* language) {
  *language = 0;
  CWideString item;
  if (FindItem(L"Dependency", index, item)) {
    WantedText id(moduleId, item);
    WantedText versionOut(version, ReadValue(item, L"Version"));
    *language = ToLong(ReadValue(item, L"Language"));
    GiveAll(id, versionOut);
  }
}

void CMMGallery::GetExclusion(long index, BSTR* moduleId, BSTR* minVersion, BSTR* maxVersion,
                              long* language) {
  *language = 0;
  CWideString item;
  if (FindItem(L"Exclusions", index, item)) {
    WantedText id(moduleId, item);
    WantedText minimum(minVersion, ReadValue(item, L"ExcludedMinVersion"));
    WantedText maximum(maxVersion, ReadValue(item, L"ExcludedMaxVersion"));
    *language = ToLong(ReadValue(item, L"ExcludedLanguage"));
    GiveAll(id, minimum, maximum);
  }
}

void CMMGallery::GetFile(long index, BSTR* fileKey, BSTR* fileName, BSTR* version, long* fileSize,
                         long* language) {
  *fileSize = 0;
  *language = 0;
  CWideString item;
  if (FindItem(L"Files", index, item)) {
    WantedText key(fileKey, item);
    WantedText name(fileName, ReadValue(item, L"FileName"));
    WantedText versionOut(version, ReadValue(item, L"Version"));
    const long size = ToLong(ReadValue(item, L"FileSize"));
    *language = ToLong(ReadValue(item, L"Language"));
    *fileSize = size;
    GiveAll(key, name, versionOut);
  }
}

void CMMGallery::GetDownloadFile(long index, BSTR* location, BSTR* mediaLocation,
                                 BSTR* internetLocation, long* fileSize, BSTR* checkSum) {
  *fileSize = 0;
  CWideString item;
  if (FindItem(L"DownloadFiles", index, item)) {
    WantedText place(location, ReadValue(item, L"Location"));
    WantedText media(mediaLocation, ReadValue(item, L"MediaLocation"));
    WantedText internet(internetLocation, ReadValue(item, L"InternetLocation"));
    const long size = ToLong(ReadValue(item, L"FileSize"));
    WantedText sum(checkSum, ReadValue(item, L"CheckSum"));
    *fileSize = size;
    GiveAll(place, media, internet, sum);
  }
}

void CMMGallery::EnsureChecked() {
  if (m_bChecked) {
    return;
  }
  const CGatePass pass;
  if (!m_bChecked) {
    CheckPresence();
    m_bChecked = true;  // not set after a failure, so that the next call checks again
  }
}

void CMMGallery::CheckPresence() {
  if (!HasFileName()) {
    return;
  }
  const CWideString root = GetGalleryRoot();
  if (CompareVersions(GetVersion(), m_strLocalVersion) > 0) {
    m_bNeedsDownload = VARIANT_TRUE;
  }
  m_strLocalPath = ResolveLocalPath();
  if (m_strLocalPath.empty()) {
    // There is no local file to update, so a newer version in the gallery does not matter.
    m_bPresent = VARIANT_FALSE;
    m_bNeedsDownload = VARIANT_FALSE;
    return;
  }
  if (!PathExists(m_strLocalPath) || !AreDownloadFilesPresent(root)) {
    m_bPresent = VARIANT_FALSE;
    m_bNeedsDownload = VARIANT_TRUE;
  }
}

/// Checks the download files by position, so that gaps in the numbering of their keys do not
/// matter.
bool CMMGallery::AreDownloadFilesPresent(const CWideString& root) {
  const CComPtr<IIniSection> section = GetSection(L"DownloadFiles");
  if (!section) {
    return true;
  }
  const CComPtr<IIniKeys> keys = KeysOf(*section);
  const long count = CountOf(*keys);
  for (long position = 1; position <= count; ++position) {
    const CComPtr<IIniKey> key = FindKey(*keys, position);
    const CWideString item = key ? ValueOf(*key) : CWideString();
    if (!IsDownloaded(root, ReadValue(item, L"Location"))) {
      return false;
    }
  }
  return true;
}
