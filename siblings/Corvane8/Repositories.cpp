#include "siblings/Corvane8/Repositories.h"

#include <utility>

void CRepository::Init(std::shared_ptr<const Repository> repository) noexcept {
  m_pRepository = std::move(repository);
}

STDMETHODIMP CRepository::GetProperty(BSTR name, BSTR* value) {
  return AnswerText(value, [&] { return FindValue(*m_pRepository, ViewOf(name)); });
}

void CRepositories::Init(std::shared_ptr<const RepositoryList> list) noexcept {
  m_pList = std::move(list);
}

STDMETHODIMP CRepositories::MoveFirst(IRepository** repository) {
  return Answer(repository, [&] { return MoveTo(0); });
}

STDMETHODIMP CRepositories::MoveNext(IRepository** repository) {
  return Answer(repository, [&] { return MoveTo(m_next); });
}

IRepository* CRepositories::MoveTo(size_t position) {
  if (position == m_pList->size()) {
    return nullptr;
  }
  const std::shared_ptr<const Repository> found(m_pList, &(*m_pList)[position]);
  IRepository* const repository = Make<CRepository>(found);
  m_next = position + 1;
  return repository;
}
