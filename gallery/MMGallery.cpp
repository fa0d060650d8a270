#include "gallery/MMGallery.h"

#include "common/Bstr.h"

HRESULT CMMGallery::GetPresent(VARIANT_BOOL* result) {
  *result = m_bPresent;
  return S_OK;
}

HRESULT CMMGallery::GetNeedsDownload(VARIANT_BOOL* result) {
  *result = m_bNeedsDownload;
  return S_OK;
}

HRESULT CMMGallery::GetLocalPath(BSTR* result) {
  *result = AllocBstr(m_strLocalPath);
  return *result ? S_OK : E_OUTOFMEMORY;
}

void CMMGallery::SetNameAndVersion(const wchar_t* name, const wchar_t* version) {
  m_strName = name;
  m_strLocalVersion = version;
}
