#include "siblings/Corvane8/Repositories.h"

#include <utility>

namespace qm::siblings {

void CRepository::Init(std::shared_ptr<const Repository> repository) noexcept {
  m_pRepository = std::move(repository);
}

STDMETHODIMP CRepository::GetProperty(BSTR name, BSTR* value) {
  return AnswerText(value, [&] { return FindValue(*m_pRepository, common::ViewOf(name)); });
}

void Repositories::Init(std::shared_ptr<const RepositoryList> list) noexcept {
  m_pList = std::move(list);
}

STDMETHODIMP Repositories::MoveFirst(IRepository** repository) {
  return Answer(repository, [&] { return MoveTo(0); });
}

STDMETHODIMP Repositories::MoveNext(IRepository** repository) {
  return Answer(repository, [&] { return MoveTo(m_next); });
}

IRepository* Repositories::MoveTo(size_t position) {
  if (position == m_pList->size()) {
    return nullptr;
  }
  const std::shared_ptr<const Repository> found(m_pList, &(*m_pList)[position]);
  IRepository* const repository = com::MakeObject<CRepository>(found);
  m_next = position + 1;
  return repository;
}

}  // namespace qm::siblings
