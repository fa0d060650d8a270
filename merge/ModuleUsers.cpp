#include "merge/ModuleUsers.h"

#include <algorithm>

#include "merge/MergePlan.h"

namespace qm::merge {

ModuleUsers::ModuleUsers(const ModuleIndex& set) : m_neededBy(set.Modules().size()) {
  const std::vector<Module>& modules = set.Modules();
  for (size_t position = 0; position < modules.size(); ++position) {
    for (const Requirement& requirement : modules[position].requirements) {
      if (IsMetWithin(modules[position], requirement)) {
        continue;
      }
      const std::vector<Candidate> candidates = set.FindCandidates(requirement, modules[position]);
      if (!candidates.empty()) {
        m_neededBy[candidates.front().module].push_back(position);
      }
    }
  }
}

std::vector<ModuleUser> ModuleUsers::Find(const std::vector<size_t>& targets) const {
  std::vector<bool> isFound(m_neededBy.size());
  for (const size_t target : targets) {
    isFound[target] = true;
  }
  std::vector<ModuleUser> found;
  const auto addUsersOf = [&](size_t needed) {
    for (const size_t user : m_neededBy[needed]) {
      if (!isFound[user]) {
        isFound[user] = true;
        found.push_back({user, needed});
      }
    }
  };
  for (const size_t target : targets) {
    addUsersOf(target);
  }
  for (size_t next = 0; next < found.size(); ++next) {
    addUsersOf(found[next].module);
  }
  std::sort(found.begin(), found.end(),
            [](const ModuleUser& a, const ModuleUser& b) { return a.module < b.module; });
  return found;
}

std::vector<size_t> MakeChain(const std::vector<ModuleUser>& users, size_t at) {
  std::vector<size_t> chain{users[at].module};
  const auto isBefore = [](const ModuleUser& user, size_t module) { return user.module < module; };
  for (auto user = users.begin() + static_cast<std::ptrdiff_t>(at);;) {
    const size_t next = user->through;
    chain.push_back(next);
    user = std::lower_bound(users.begin(), users.end(), next, isBefore);
    if (user == users.end() || user->module != next) {
      return chain;
    }
  }
}

}  // namespace qm::merge
