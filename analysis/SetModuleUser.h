#pragma once

#include <memory>
#include <vector>

#include "analysis/SetObject.h"
#include "merge/ModuleUsers.h"

namespace qm::analysis {

/// A module that needs another one.
class SetModuleUser : public SetObject<IModuleUser> {
 public:
  using Users = std::shared_ptr<const std::vector<merge::ModuleUser>>;

  /// The object is the user at index `at` of `users`, which has all users of a module.
  void Init(SharedSet set, Users users, size_t at) noexcept;

  STDMETHOD(get_Module)(ISetModule** value) override;
  STDMETHOD(get_Through)(ISetModule** value) override;
  STDMETHOD(get_Chain)(ISetModules** value) override;

 private:
  SharedSet m_set;
  Users m_users;
  size_t m_at = 0;
};

/// Makes a collection of modules that need another one.
IModuleUsers* MakeUsers(const SharedSet& set, std::vector<merge::ModuleUser> users);

}  // namespace qm::analysis
