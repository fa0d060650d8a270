#include "client/catalog/Catalog.h"
#include "client/catalog/ListedModules.h"
#include "client/commands/Commands.h"

namespace {

ExitCode Run(const OutputOptions& output) {
  Report report("list", output);
  const std::vector<ListedModule> modules = ReadModules(*Catalog().Modules(), report);
  if (report.AsJson()) {
    report.Document()["modules"] = ModuleListJson(modules);
  } else {
    report.Print(ModuleListText(modules));
  }
  return report.Finish();
}

}  // namespace

extern const Command kListCommand = {
    "list",
    "List all modules in the catalog",
    "  mmcat list\n"
    "  mmcat list --folder C:\\Modules --folder D:\\More\n",
    PrepareCommand<Run>,
};
