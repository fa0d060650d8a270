#pragma once

#include <memory>

#include "com/component/ComponentObject.h"
#include "common/FileStamp.h"
#include "idl/siblings.h"
#include "siblings/Corvane8/RepositoryList.h"

namespace qm::siblings {

/// Reader of the list of repositories (coclass RepositoryMgr).
///
/// Caches the list until the last-write time or size of the file changes, which each call checks. A
/// failure is not cached: the next call tries again.
class CRepositoryMgr : public com::ComponentObject<IRepositoryMgr, &CLSID_RepositoryMgr> {
 public:
  STDMETHOD(get_Path)(BSTR* path) override;
  STDMETHOD(put_Path)(BSTR path) override;
  STDMETHOD(GetRepositories)(IRepositories** repositories) override;

 private:
  /// Returns the stamp of a file; all 0 if there is no such file. Raises other failures.
  static common::FileStamp ReadStamp(const common::WideString& path);

  void ReloadIfChanged();

  common::WideString m_strPath;
  std::shared_ptr<const RepositoryList> m_pList;  ///< null until the file is read
  common::FileStamp m_stamp;                      ///< of the file just before it was read
};

}  // namespace qm::siblings
