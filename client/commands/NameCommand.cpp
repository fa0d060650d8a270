#include <CLI/CLI.hpp>

#include "client/catalog/Catalog.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/commands/UnknownKey.h"
#include "client/terminal/Text.h"

namespace mmcat {

namespace {

/// The display name from the index of module names, else from the first module with this key; empty
/// if there is neither.
std::string FindDisplayName(const Catalog& catalog, const std::string& key) {
  std::string indexed = catalog.FindDisplayName(key);
  if (indexed != key) {
    return indexed;
  }
  const qm::common::ComPtr<IMergeModules> modules = catalog.FindNamedModules(key, "");
  if (ReadNumber(*modules, &IMergeModules::get_Count) == 0) {
    return "";
  }
  VARIANT first;
  first.vt = VT_I4;
  first.lVal = 1;
  qm::common::ComPtr<IMergeModule> module;
  ThrowIfFailed(modules->get_Item(first, module.Put()));
  return ReadText(*module, &IMergeModule::get_DisplayName);
}

struct Options {
  std::string key;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("KEY", options.key, kKeyHelp)->required();
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const std::string& key = options.key;
  Report report("name", output);
  const Catalog catalog;
  const std::string displayName = FindDisplayName(catalog, key);
  report.Document().update({{"key", key}, {"displayName", displayName}});
  if (displayName.empty()) {
    PrintUnknownKey(catalog.Names(), key, "name KEY");
    return report.Finish(kNothingMatched);
  }
  report.Print(MakePrintable(displayName) + '\n');
  return report.Finish();
}

}  // namespace

extern const Command kNameCommand = {
    "name",
    "Print the display name of a module",
    "  mmcat name CharmapCore:1031\n",
    PrepareCommand<Options, AddArguments, Run>,
};

}  // namespace mmcat
