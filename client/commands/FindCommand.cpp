#include <CLI/CLI.hpp>

#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogFacts.h"
#include "client/catalog/ListedModules.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"

namespace {

struct Options {
  std::string key;
  std::string version;  ///< empty for all versions
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("KEY", options.key, kKeyHelp)->required();
  parser.add_option("--version", options.version, "Only this version");
}

void RemarkNotFound(const Catalog& catalog, const Options& options) {
  std::string versions;
  if (!options.version.empty()) {
    ForEach<IMergeModule>(*catalog.Find(options.key, ""), [&](IMergeModule& module) {
      versions += (versions.empty() ? "" : ", ") + Text(module, &IMergeModule::get_Version);
    });
  }
  if (versions.empty()) {
    RemarkUnknownKey(catalog.Keys(), options.key);
  } else {
    PrintRemark(options.key + ": the catalog has no version " + options.version + ", only " +
                versions);
  }
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("find", output);
  const Catalog catalog;
  const std::vector<ListedModule> modules =
      ReadModules(*catalog.Find(options.key, options.version), report);
  if (modules.empty()) {
    RemarkNotFound(catalog, options);
  }
  if (report.AsJson()) {
    report.Document()["modules"] = ModuleListJson(modules);
  } else if (!modules.empty()) {
    report.Print(ModuleListText(modules));
  }
  return report.Finish(modules.empty() ? kNothingMatched : kSuccess);
}

}  // namespace

extern const Command kFindCommand = {
    "find",
    "List the modules with an ID",
    "  mmcat find Charmap.3128F3C8            in every language\n"
    "  mmcat find Charmap.3128F3C8:1031 --version 2.4.1.0\n",
    PrepareCommand<Options, AddArguments, Run>,
};
