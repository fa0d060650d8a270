#pragma once

#include <memory>

#include "common/FileStamp.h"
#include "siblings/Component/ComponentObject.h"
#include "siblings/Corvane8/RepositoryList.h"

/// Reader of the list of repositories (coclass RepositoryMgr).
///
/// Keeps the list until the file's last-write time or size is another, which each call asks for
/// once. What fails is not kept: the next call tries again.
class CRepositoryMgr : public CComponentObject<IRepositoryMgr, &CLSID_RepositoryMgr> {
 public:
  STDMETHOD(get_Path)(BSTR* path) override;
  STDMETHOD(put_Path)(BSTR path) override;
  STDMETHOD(GetRepositories)(IRepositories** repositories) override;

 private:
  /// All 0 when there is no file. Raises the failure of one that is there and cannot be asked.
  static FileStamp StampOf(const CWideString& path);

  void Refresh();

  CWideString m_strPath;
  std::shared_ptr<const RepositoryList> m_pList;  // null before the file was read
  FileStamp m_stamp;                              // of the file just before it was read
};
