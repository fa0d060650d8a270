#include <CLI/CLI.hpp>

#include "client/catalog/Catalog.h"
#include "client/catalog/ListedModules.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/commands/UnknownKey.h"

namespace mmcat {

namespace {

struct Options {
  std::string key;
  std::string version;  ///< empty for all versions
};

void AddArguments(CLI::App& parser, Options& options) {
  parser
      .add_option("KEY", options.key, "Module as in the other commands, or a pattern with * and ?")
      ->required();
  parser.add_option("--version", options.version, "Only this version");
}

void RemarkNotFound(const Catalog& catalog, const Options& options) {
  std::string versions;
  if (!options.version.empty()) {
    ForEachItem<IMergeModule>(
        *catalog.FindNamedModules(options.key, ""), [&](IMergeModule& module) {
          versions += (versions.empty() ? "" : ", ") + ReadText(module, &IMergeModule::get_Version);
        });
  }
  if (versions.empty()) {
    PrintUnknownKey(catalog.Names(), options.key, "find KEY");
  } else {
    PrintRemark(options.key + ": the catalog has no version " + options.version + ", only " +
                versions);
  }
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("find", output, 2);
  const Catalog catalog;
  const std::vector<ListedModule> modules =
      ReadModules(*catalog.FindNamedModules(options.key, options.version), report);
  if (modules.empty()) {
    RemarkNotFound(catalog, options);
  }
  if (report.IsJson()) {
    report.Document()["modules"] = MakeModulesJson(modules);
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatModulesCsv(modules));
  } else if (!modules.empty()) {
    report.Print(FormatModules(modules));
  }
  return report.Finish(modules.empty() ? kNothingMatched : kSuccess);
}

}  // namespace

extern const Command kFindCommand = {
    "find",
    "List the modules with a name",
    "  mmcat find CharmapCore                 in every language\n"
    "  mmcat find InkRibbon:1033 --version 4.6.1.0\n"
    "  mmcat find \"Ink*\"\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
