#include "merge/Module.h"

namespace qm::merge {

const std::string& GetDisplayName(const Module& module) noexcept {
  return module.moduleId.empty() ? module.path : module.key;
}

std::string MakeModuleKey(const std::string& moduleId, long language) {
  return moduleId + ':' + std::to_string(language);
}

}  // namespace qm::merge
