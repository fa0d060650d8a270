#pragma once

#include <cstddef>
#include <vector>

#include "merge/ModuleIndex.h"

namespace qm::merge {

/// A module that needs one of several target modules.
struct ModuleUser {
  size_t module;
  size_t through;  ///< the module it needs directly, on the shortest path to the nearest target
};

/// Who needs whom in a set, if each requirement is satisfied by the best module for it. Immutable.
class ModuleUsers {
 public:
  explicit ModuleUsers(const ModuleIndex& set);

  /// Returns the modules that need one of the modules at `targets`, directly or through others, in
  /// ascending order and without the targets.
  std::vector<ModuleUser> Find(const std::vector<size_t>& targets) const;

 private:
  std::vector<std::vector<size_t>> m_neededBy;
};

/// Returns the shortest chain from the user at index `at` of Find's result to a target: the user,
/// what it needs directly, and so on to the target.
std::vector<size_t> MakeChain(const std::vector<ModuleUser>& users, size_t at);

}  // namespace qm::merge
