#include "analysis/SetModuleUser.h"

#include "analysis/ModuleItem.h"
#include "analysis/SetCollection.h"

namespace qm::analysis {

void SetModuleUser::Init(SharedSet set, Users users, size_t at) noexcept {
  m_set = std::move(set);
  m_users = std::move(users);
  m_at = at;
}

STDMETHODIMP SetModuleUser::get_Module(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, (*m_users)[m_at].module); });
}
STDMETHODIMP SetModuleUser::get_Through(ISetModule** value) {
  return Answer(value, [&] { return MakeModule(m_set, (*m_users)[m_at].through); });
}
STDMETHODIMP SetModuleUser::get_Chain(ISetModules** value) {
  return Answer(value, [&] { return MakeModules(m_set, merge::MakeChain(*m_users, m_at)); });
}

IModuleUsers* MakeUsers(const SharedSet& set, std::vector<merge::ModuleUser> users) {
  const auto shared = std::make_shared<const std::vector<merge::ModuleUser>>(std::move(users));
  return MakeCollection<IModuleUsers, IModuleUser>(
      shared->size(),
      [set, shared](size_t at) { return com::MakeObject<SetModuleUser>(set, shared, at); },
      [set, shared](size_t at) { return set->ModuleAt((*shared)[at].module).key; });
}

}  // namespace qm::analysis
