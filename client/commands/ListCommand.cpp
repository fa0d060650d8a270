#include "client/catalog/Catalog.h"
#include "client/catalog/ListedModules.h"
#include "client/commands/Commands.h"

namespace mmcat {

namespace {

ExitCode Run(const OutputOptions& output) {
  Report report("list", output);
  const std::vector<ListedModule> modules = ReadModules(*Catalog().Modules(), report);
  if (report.IsJson()) {
    report.Document()["modules"] = MakeModulesJson(modules);
  } else {
    report.Print(FormatModules(modules));
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

}  // namespace mmcat
