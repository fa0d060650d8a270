#pragma once

#include <memory>

#include "siblings/Component/ComponentObject.h"
#include "siblings/Corvane8/RepositoryList.h"

/// One repository. Shares the list that it belongs to.
class CRepository : public CComponentObject<IRepository, &CLSID_RepositoryMgr> {
 public:
  void Init(std::shared_ptr<const Repository> repository) noexcept;

  STDMETHOD(GetProperty)(BSTR name, BSTR* value) override;

 private:
  std::shared_ptr<const Repository> m_pRepository;
};

/// The repositories of a file, with a cursor. Shares the list as it was read, which outlives the
/// manager and the file.
class CRepositories : public CComponentObject<IRepositories, &CLSID_RepositoryMgr> {
 public:
  void Init(std::shared_ptr<const RepositoryList> list) noexcept;

  STDMETHOD(MoveFirst)(IRepository** repository) override;
  STDMETHOD(MoveNext)(IRepository** repository) override;

 private:
  /// Moves the cursor to `position` and gives what is there. At the end, where there is nothing,
  /// and after a failure it stays where it was.
  IRepository* MoveTo(size_t position);

  std::shared_ptr<const RepositoryList> m_pList;
  size_t m_next = 0;  ///< position of the repository behind the cursor
};
