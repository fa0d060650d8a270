#include "client/ListCommands.h"

#include "client/Catalog.h"
#include "client/ModuleList.h"

namespace {

ExitCode Finish(Report& report, const std::vector<ListedModule>& modules) {
  if (report.AsJson()) {
    report.Document()["modules"] = ModuleListJson(modules);
  } else {
    report.Print(ModuleListText(modules));
  }
  return report.Finish();
}

}  // namespace

ExitCode List(bool json) {
  Report report("list", json);
  return Finish(report, ReadModules(*Catalog().Modules(), report));
}

ExitCode Find(const std::string& key, const std::string& version, bool json) {
  Report report("find", json);
  const std::vector<ListedModule> modules = ReadModules(*Catalog().Find(key, version), report);
  const ExitCode exitCode = Finish(report, modules);
  return modules.empty() ? kNothingMatched : exitCode;
}
