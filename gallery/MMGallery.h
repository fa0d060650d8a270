#pragma once

#include <windows.h>

#include "common/WideString.h"

/// What the object gallery says about one module. Base of every module record; a module without a
/// gallery description is present and needs no download.
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

  /// A new BSTR with the full path of the local module file; empty when there is none.
  /// E_OUTOFMEMORY.
  virtual HRESULT GetLocalPath(BSTR* result);

  /// Names the module's gallery description and the version that is known locally; null counts as
  /// empty. Called once, before anything is read.
  void SetNameAndVersion(const wchar_t* name, const wchar_t* version);

 private:
  CWideString m_strName;
  CWideString m_strLocalVersion;
  VARIANT_BOOL m_bPresent = VARIANT_TRUE;
  VARIANT_BOOL m_bNeedsDownload = VARIANT_FALSE;
  CWideString m_strLocalPath;
};
