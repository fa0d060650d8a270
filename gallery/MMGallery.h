#pragma once

#include <atomic>

#include "com/frame/ApartmentPtr.h"
#include "gallery/Siblings.h"

/// What the object gallery says about one module: the record of its description, an INI file of the
/// gallery folder. Base of every module record.
///
/// The INI file is opened at the first question that needs it and kept open, for the apartment that
/// asked last; a module without one is present and needs no download. Whether the module is present
/// is checked once, at the first question. Failures are raised: those of the application services,
/// and those of the INI reader after it has opened the file. A file that is missing or cannot be
/// opened is no failure; it reads as empty. Apartments that share a record ask behind the
/// ApartmentGate.
class CMMGallery {
 public:
  CMMGallery() noexcept = default;
  CMMGallery(const CMMGallery&) = delete;
  CMMGallery& operator=(const CMMGallery&) = delete;
  virtual ~CMMGallery() = default;

  /// Whether the module and all its download files are on this machine.
  virtual HRESULT GetPresent(VARIANT_BOOL* result);

  /// Whether the gallery holds a newer version, or something is missing on this machine.
  virtual HRESULT GetNeedsDownload(VARIANT_BOOL* result);

  /// A new BSTR with the full path of the local module file as the check found it; empty when there
  /// is none. Throws std::bad_alloc.
  virtual HRESULT GetLocalPath(BSTR* result);

  /// Names the module's gallery description and the version that is known locally. Called once,
  /// before anything is read.
  void SetNameAndVersion(const CWideString& name, const CWideString& version);

  // Texts of the description; empty, or 0, where it has none.
  CWideString GetAuthor();
  CWideString GetComments();
  CWideString GetSubject();
  CWideString GetModuleID();
  CWideString GetVersion();
  long GetLanguage();

  /// Whether the description names a module file.
  bool HasFileName();

  /// The module file in the first folder of the module search path that has it; empty when none
  /// has, or when the description gives the file no location.
  CWideString ResolveLocalPath();

  // Items of the description's lists, by their index from 0. The server asks for the
  // download files alone. Texts are new BSTRs; a null pointer is not wanted. An item that is
  // missing leaves texts as they are and numbers 0.
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
  const CWideString& Name() const noexcept { return m_strName; }

 private:
  static CWideString GetGalleryRoot();
  CWideString GetIniPath() const;
  CComPtr<IIniReader> GetIni();
  CComPtr<IIniSection> GetSection(const CWideString& section);
  CWideString ReadValue(const CWideString& section, const CWideString& key);
  bool FindValue(const CWideString& section, const CWideString& key, CWideString& value);
  CWideString ReadModuleValue(const wchar_t* key);
  long CountItems(const wchar_t* list);
  bool FindItem(const wchar_t* list, long index, CWideString& item);

  void EnsureChecked();
  void CheckPresence();
  bool AreDownloadFilesPresent(const CWideString& root);

  CWideString m_strName;
  CWideString m_strLocalVersion;
  VARIANT_BOOL m_bPresent = VARIANT_TRUE;
  VARIANT_BOOL m_bNeedsDownload = VARIANT_FALSE;
  std::atomic<bool> m_bChecked = false;
  CApartmentPtr<IIniReader> m_pIni;
  CWideString m_strLocalPath;
};
