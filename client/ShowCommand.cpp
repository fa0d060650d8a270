#include "client/ShowCommand.h"

#include "client/ModuleDescription.h"
#include "client/ModuleJson.h"
#include "client/ModuleText.h"
#include "client/Properties.h"
#include "client/Report.h"
#include "common/Path.h"
#include "idl/qmmmupdater2.h"

namespace {

ModuleDescription Read(IMergeModule2& module, const std::string& file) {
  Check(module.Open(Argument(FullPath(ToWide(file))).Get()));
  return Describe(module);
}

}  // namespace

ExitCode Show(const std::vector<std::string>& files, bool json) {
  const auto module = Create<IMergeModule2>(CLSID_MergeModule2, "QmMMUpdater2.dll");
  Report report("show", json);
  Json modules = Json::array();
  bool first = true;
  for (const std::string& file : files) {
    try {
      const ModuleDescription description = Read(*module, file);
      if (json) {
        modules.push_back(ModuleJson(description));
      } else {
        // A blank line between modules.
        report.Print((first ? "" : "\n") + ModuleText(description));
        first = false;
      }
      for (const PartFailure& failed : description.failures) {
        report.AddFailure(file, failed.part, failed.failure);
      }
    } catch (const ServerFailure& failure) {
      report.AddFailure(file, "", failure);
    }
  }
  report.Document()["modules"] = std::move(modules);
  return report.Finish();
}
