#pragma once

#include <string>
#include <utility>
#include <vector>

#include "merge/MergePlan.h"

namespace qm::tests {

/// A module of a set, whose key is made of ID and language.
inline merge::Module Module(const std::string& id, const std::string& version = "1.0",
                            long language = 1033,
                            std::vector<merge::Requirement> requirements = {}) {
  merge::Module module;
  module.key = merge::MakeModuleKey(id, language);
  module.moduleId = id;
  module.language = language;
  module.version = version;
  module.requirements = std::move(requirements);
  return module;
}

}  // namespace qm::tests
