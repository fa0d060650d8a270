#include "gallery/MMGallery.h"

#include <shlwapi.h>

#include "com/error/ErrorHandler.h"
#include "com/error/Raise.h"
#include "com/frame/ApartmentGate.h"
#include "common/Bstr.h"
#include "common/Path.h"
#include "common/SearchPath.h"
#include "gallery/CompareVersions.h"
#include "gallery/IniFile.h"

namespace {

constexpr wchar_t kModuleSection[] = L"MergeModule";
constexpr wchar_t kGalleryFolder[] = L"ObjectGallery";

bool IsFile(const CWideString& path) noexcept {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// Whether a name stays in the folder that it is joined to. It may come out of a module.
bool IsPlainFileName(std::wstring_view name) noexcept {
  return name.find_first_of(L"\\/:") == std::wstring_view::npos;
}

/// Whether a download file lies below the gallery root or beside the descriptions.
bool IsDownloaded(const CWideString& root, const CWideString& location) {
  return !root.empty() && (PathExists(JoinPath(root, location)) ||
                           PathExists(JoinPath(JoinPath(root, kGalleryFolder), location)));
}

long ToLong(const CWideString& text) noexcept { return ::_wtol(text.c_str()); }

/// A text that a caller may want; its BSTR is made at once and given away at the end, when nothing
/// can fail any more.
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

/// Path of the description; empty when there is no gallery.
CWideString CMMGallery::GetIniPath() const {
  const CWideString root = GetGalleryRoot();
  if (root.empty()) {
    return {};  // joined with nothing the path would be relative to the current folder
  }
  return JoinPath(JoinPath(root, kGalleryFolder), m_strName) + L".ini";
}

CComPtr<IIniReader> CMMGallery::GetIni() {
  const CGatePass pass;
  if (!m_pIni.Get() && IsPlainFileName(m_strName)) {
    ReleaseReturnedReferences();  // of readers that this thread made and another replaced
    // A description that cannot be opened is as good as none.
    DropFailures([&] {
      const CWideString path = GetIniPath();
      if (IsFile(path)) {
        const CUniqueBstr text = MakeBstr(path);
        const CComPtr<IIniReader> reader = CreateIniReader();
        const HRESULT loaded = reader->Load(text.Get());
        // What another apartment has read is not given up for a failure.
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

/// The text of a key; false, and `value` untouched, when the section or the key is missing.
bool CMMGallery::FindValue(const CWideString& section, const CWideString& key, CWideString& value) {
  const CComPtr<IIniSection> found = GetSection(section);
  const CComPtr<IIniKey> entry = found ? FindKey(*KeysOf(*found), key) : nullptr;
  if (!entry) {
    return false;
  }
  CUniqueBstr text;
  if (FAILED(entry->get_Value(text.Put()))) {
    ::SetErrorInfo(0, nullptr);  // a value that cannot be read is empty, unlike everything else
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
  // What the location says does not matter: that there is one sends us to the search folders.
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

/// The value of an item's key in its list, which names the item's own section; false when the list
/// or the key is missing.
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
    m_bChecked = true;  // not after a failure: the next question checks again
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
    // There is nothing to download to: that the gallery is newer does not count then.
    m_bPresent = VARIANT_FALSE;
    m_bNeedsDownload = VARIANT_FALSE;
    return;
  }
  if (!PathExists(m_strLocalPath) || !AreDownloadFilesPresent(root)) {
    m_bPresent = VARIANT_FALSE;
    m_bNeedsDownload = VARIANT_TRUE;
  }
}

/// Goes through the download files by position, so that keys that are not numbered in sequence
/// count as well.
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
