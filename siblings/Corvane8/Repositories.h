#pragma once

#include <memory>

#include "com/component/ComponentObject.h"
#include "idl/siblings.h"
#include "siblings/Corvane8/RepositoryList.h"

namespace qm::siblings {

/// One repository. Keeps the list that contains it alive.
class CRepository : public com::ComponentObject<IRepository, &CLSID_RepositoryMgr> {
 public:
  void Init(std::shared_ptr<const Repository> repository) noexcept;

  STDMETHOD(GetProperty)(BSTR name, BSTR* value) override;

 private:
  std::shared_ptr<const Repository> m_pRepository;
};

/// The repositories of a file, with a cursor. Keeps the list that was read, even after the manager
/// is gone or the file has changed.
class Repositories : public com::ComponentObject<IRepositories, &CLSID_RepositoryMgr> {
 public:
  void Init(std::shared_ptr<const RepositoryList> list) noexcept;

  STDMETHOD(MoveFirst)(IRepository** repository) override;
  STDMETHOD(MoveNext)(IRepository** repository) override;

 private:
  /// Moves the cursor to `position` and returns a new object for the repository there; the caller
  /// owns the reference. At the end of the list returns null and leaves the cursor alone. A failure
  /// leaves the cursor alone too.
  IRepository* MoveTo(size_t position);

  std::shared_ptr<const RepositoryList> m_pList;
  size_t m_next = 0;  ///< position of the repository after the cursor
};

}  // namespace qm::siblings
