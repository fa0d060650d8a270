#pragma once

#include <atomic>

#include "com/frame/ApartmentPtr.h"
#include "gallery/SiblingObjects.h"

namespace qm::gallery {

/// The object gallery's description of one module, an INI file in the gallery folder. Base of every
/// module record.
///
/// Apartments may share a record: its functions enter the ApartmentGate while they open the file or
/// check for presence. The name and version must be set before.
///
/// The first call that needs the INI file loads it. The loaded file is kept for the apartment that
/// used it last. A file that cannot be located or opened, for whatever reason, reads as empty. A
/// module without a description is present and needs no download. Presence is checked once, at the
/// first call that asks for it. Other failures of the application services and of the INI reader
/// are raised.
class CMMGallery {
 public:
  CMMGallery() noexcept = default;
  CMMGallery(const CMMGallery&) = delete;
  CMMGallery& operator=(const CMMGallery&) = delete;
  virtual ~CMMGallery() = default;

  /// Sets `*result` to whether the module and all its download files are on this machine.
  virtual HRESULT GetPresent(VARIANT_BOOL* result);

  /// Sets `*result` to whether the gallery has a newer version or something is missing on this
  /// machine.
  virtual HRESULT GetNeedsDownload(VARIANT_BOOL* result);

  /// Sets `*result` to a new BSTR with the full path of the local module file that the check found;
  /// empty if there is no such file. Throws std::bad_alloc.
  virtual HRESULT GetLocalPath(BSTR* result);

  /// Sets the name of the module's gallery description and the version that is known locally. Call
  /// once, before anything is read.
  void SetNameAndVersion(const common::WideString& name, const common::WideString& version);

  // Values of the description; empty or 0 if it has no such value.
  common::WideString GetAuthor();
  common::WideString GetComments();
  common::WideString GetSubject();
  common::WideString GetModuleID();
  common::WideString GetVersion();
  long GetLanguage();

  /// Returns whether the description names a module file.
  bool HasFileName();

  /// Returns the path of the module file in the first folder of the module search path that
  /// contains it; empty if no folder does, or if the description has no location for the file.
  common::WideString ResolveLocalPath();

  // Items of the description's lists, by index from 0. The server reads only the download files.
  // Texts are returned as new BSTRs unless the pointer is null. For a missing item, texts are left
  // alone and numbers are set to 0.
  long GetDependencyCount();
  long GetExclusionCount();
  long GetFileCount();
  long GetDownloadFileCount();
  void GetDependency(long index, BSTR* moduleId, BSTR* version, long* language);
  void GetExclusion(long index, BSTR* moduleId, BSTR* minVersion, BSTR* maxVersion, long* language);
  void GetFile(long index, BSTR* fileKey, BSTR* fileName, BSTR* version, long* fileSize,
               long* language);
  void GetDownloadFile(long index, BSTR* location, BSTR* mediaLocation, BSTR* internetLocation,
                       long* fileSize, BSTR* checkSum);

 protected:
  const common::WideString& Name() const noexcept { return m_strName; }

 private:
  static common::WideString GetGalleryRoot();
  common::WideString GetIniPath() const;
  common::ComPtr<IIniReader> GetIni();
  common::ComPtr<IIniSection> GetSection(const common::WideString& section);
  common::WideString ReadValue(const common::WideString& section, const common::WideString& key);
  bool FindValue(const common::WideString& section, const common::WideString& key,
                 common::WideString& value);
  common::WideString ReadModuleValue(const wchar_t* key);
  long GetItemCount(const wchar_t* list);
  bool ReadItemName(const wchar_t* list, long index, common::WideString& item);

  void EnsureChecked();
  void CheckPresence();
  bool AreDownloadFilesPresent(const common::WideString& root);

  common::WideString m_strName;
  common::WideString m_strLocalVersion;
  VARIANT_BOOL m_bPresent = VARIANT_TRUE;
  VARIANT_BOOL m_bNeedsDownload = VARIANT_FALSE;
  std::atomic<bool> m_bChecked = false;
  com::ApartmentPtr<IIniReader> m_pIni;
  common::WideString m_strLocalPath;
};

}  // namespace qm::gallery
