#include "module/MMFile.h"

namespace qm::module {

void CMMFile::Init(const FileRow& file) {
  m_strDirectory = file.Directory;
  m_strKey = file.File;
  m_nFileSize = file.FileSize;
  m_strFileName = file.FileName;
  m_strVersion = file.Version;
  m_strLanguage = file.Language;
  m_nSequence = file.Sequence;
}

STDMETHODIMP CMMFile::get_Directory(BSTR* value) { return GetText(m_strDirectory, value); }

STDMETHODIMP CMMFile::get_Key(BSTR* value) { return GetText(m_strKey, value); }

STDMETHODIMP CMMFile::get_FileSize(long* value) {
  *value = m_nFileSize;
  return S_OK;
}

STDMETHODIMP CMMFile::get_FileName(BSTR* value) { return GetText(m_strFileName, value); }

STDMETHODIMP CMMFile::get_Version(BSTR* value) { return GetText(m_strVersion, value); }

STDMETHODIMP CMMFile::get_Language(BSTR* value) { return GetText(m_strLanguage, value); }

STDMETHODIMP CMMFile::get_Sequence(long* value) {
  *value = m_nSequence;
  return S_OK;
}

}  // namespace qm::module
