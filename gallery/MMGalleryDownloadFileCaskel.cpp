#include "gallery/MMGalleryDownloadFileCaskel.h"

#include "common/Bstr.h"

void CMMGalleryDownloadFileCaskel::Init(const wchar_t* location, const wchar_t* mediaLocation,
                                        const wchar_t* internetLocation, long fileSize,
                                        const wchar_t* checkSum) {
  m_strLocation = location;
  m_strMediaLocation = mediaLocation;
  m_strInternetLocation = internetLocation;
  m_lFileSize = fileSize;
  m_strCheckSum = checkSum;
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_Location(BSTR* value) {
  return GiveBstr(m_strLocation, value);
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_MediaLocation(BSTR* value) {
  return GiveBstr(m_strMediaLocation, value);
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_InternetLocation(BSTR* value) {
  return GiveBstr(m_strInternetLocation, value);
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_FileSize(long* value) {
  *value = m_lFileSize;
  return S_OK;
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_CheckSum(BSTR* value) {
  return GiveBstr(m_strCheckSum, value);
}
