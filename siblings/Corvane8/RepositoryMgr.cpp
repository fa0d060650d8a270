#include "siblings/Corvane8/RepositoryMgr.h"

#include "siblings/Corvane8/Repositories.h"
#include "siblings/File.h"

namespace qm::siblings {

STDMETHODIMP CRepositoryMgr::get_Path(BSTR* path) {
  return AnswerText(path, [&]() -> std::wstring_view { return m_strPath; });
}

STDMETHODIMP CRepositoryMgr::put_Path(BSTR path) {
  return MethodBoundary([&] {
    if (m_strPath != common::ViewOf(path)) {
      m_strPath = common::ViewOf(path);
      m_pList.reset();
    }
    return S_OK;
  });
}

STDMETHODIMP CRepositoryMgr::GetRepositories(IRepositories** repositories) {
  return Answer(repositories, [&] {
    ReloadIfChanged();
    return com::MakeObject<Repositories>(m_pList);
  });
}

void CRepositoryMgr::ReloadIfChanged() {
  const common::FileStamp stamp = ReadStamp(m_strPath);
  if (!m_pList || stamp != m_stamp) {
    m_pList = ReadRepositories(m_strPath);
    // The stamp is from before reading, so that the next call notices a change during reading.
    m_stamp = stamp;
  }
}

common::FileStamp CRepositoryMgr::ReadStamp(const common::WideString& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) &&
      !IsMissingFile(::GetLastError())) {
    RaiseLastFileError(path);
  }
  return common::FileStamp::From(data);
}

}  // namespace qm::siblings
