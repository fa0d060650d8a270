#include "client/commands/ListCommands.h"

#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogFacts.h"
#include "client/catalog/ModuleList.h"
#include "client/catalog/Properties.h"

namespace {

ExitCode Finish(Report& report, const std::vector<ListedModule>& modules, ExitCode outcome) {
  if (report.AsJson()) {
    report.Document()["modules"] = ModuleListJson(modules);
  } else if (outcome != kNothingMatched) {
    report.Print(ModuleListText(modules));
  }
  return report.Finish(outcome);
}

void RemarkNotFound(const Catalog& catalog, const std::string& key, const std::string& version) {
  std::string versions;
  if (!version.empty()) {
    ForEach<IMergeModule>(*catalog.Find(key, ""), [&](IMergeModule& module) {
      versions += (versions.empty() ? "" : ", ") + Text(module, &IMergeModule::get_Version);
    });
  }
  if (versions.empty()) {
    RemarkUnknownKey(catalog.Keys(), key);
  } else {
    PrintRemark(key + ": the catalog has no version " + version + " of it, but " + versions);
  }
}

}  // namespace

ExitCode List(const OutputOptions& output) {
  Report report("list", output);
  return Finish(report, ReadModules(*Catalog().Modules(), report), kSuccess);
}

ExitCode Find(const std::string& key, const std::string& version, const OutputOptions& output) {
  Report report("find", output);
  const Catalog catalog;
  const std::vector<ListedModule> modules = ReadModules(*catalog.Find(key, version), report);
  if (modules.empty()) {
    RemarkNotFound(catalog, key, version);
  }
  return Finish(report, modules, modules.empty() ? kNothingMatched : kSuccess);
}
