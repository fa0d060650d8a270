#include "gallery/MMGalleryDownloadFileCaskel.h"

#include "com/error/ErrorHandler.h"

namespace qm::gallery {

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
  return com::AnswerText(GUID_NULL, value,
                         [&]() -> const common::WideString& { return m_strLocation; });
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_MediaLocation(BSTR* value) {
  return com::AnswerText(GUID_NULL, value,
                         [&]() -> const common::WideString& { return m_strMediaLocation; });
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_InternetLocation(BSTR* value) {
  return com::AnswerText(GUID_NULL, value,
                         [&]() -> const common::WideString& { return m_strInternetLocation; });
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_FileSize(long* value) {
  *value = m_lFileSize;
  return S_OK;
}

STDMETHODIMP CMMGalleryDownloadFileCaskel::get_CheckSum(BSTR* value) {
  return com::AnswerText(GUID_NULL, value,
                         [&]() -> const common::WideString& { return m_strCheckSum; });
}

}  // namespace qm::gallery
