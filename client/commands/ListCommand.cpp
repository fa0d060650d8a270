#include "client/catalog/Catalog.h"
#include "client/catalog/ListedModules.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"
#include "client/terminal/Csv.h"

namespace mmcat {

namespace {

ExitCode Run(const OutputOptions& output) {
  Report report("list", output, 2);
  const std::vector<ListedModule> modules = ReadModules(*Catalog().Modules(), report);
  const ExitCode outcome = RequireModules(modules.size());
  if (report.IsJson()) {
    report.Document()["modules"] = MakeModulesJson(modules);
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatCsv({"key", "moduleId", "language", "version", "displayName",
                                     "packageCode", "fromGallery", "origin", "path"},
                                    MakeModulesJson(modules)));
  } else if (!modules.empty()) {
    report.Print(FormatModules(modules));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kListCommand = {
    "list",
    "List all modules in the catalog",
    "  mmcat list\n"
    "  mmcat list --folder C:\\Modules --folder D:\\More\n"
    "  mmcat list --format csv > modules.csv\n",
    PrepareCommand<Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
