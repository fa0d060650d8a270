#include "client/findings/CheckResult.h"

#include "client/findings/Location.h"

namespace mmcat {

std::string LocateFinding(const CheckResult& result, const FindingFacts& finding) {
  for (const size_t position : finding.modules) {
    if (!result.modules[position].path.empty()) {
      return LocateModule(result, result.modules[position]);
    }
  }
  if (!finding.moduleKeys.empty()) {
    return MakeRelativePath(finding.moduleKeys.front(), result.base);
  }
  return finding.file.empty() ? "catalog" : MakeRelativePath(finding.file, result.base);
}

std::string LocateModule(const CheckResult& result, const ModuleFacts& module) {
  return module.path.empty() ? module.key : MakeRelativePath(module.path, result.base);
}

}  // namespace mmcat
