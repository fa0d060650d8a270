#include <CLI/CLI.hpp>

#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogFacts.h"
#include "client/catalog/Properties.h"
#include "client/commands/Commands.h"
#include "client/terminal/TextTable.h"

namespace {

/// The display name from the index of module names, else from the first module with this key; empty
/// if there is neither.
std::string FindName(const Catalog& catalog, const std::string& key) {
  std::string indexed = catalog.DisplayName(key);
  if (indexed != key) {
    return indexed;
  }
  const CComPtr<IMergeModules> modules = catalog.Find(key, "");
  if (Number(*modules, &IMergeModules::get_Count) == 0) {
    return "";
  }
  VARIANT first;
  first.vt = VT_I4;
  first.lVal = 1;
  CComPtr<IMergeModule> module;
  Check(modules->get_Item(first, module.Put()));
  return Text(*module, &IMergeModule::get_DisplayName);
}

struct Options {
  std::string key;
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("KEY", options.key, "Module key, ID:LANGUAGE")->required();
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const std::string& key = options.key;
  Report report("name", output);
  const Catalog catalog;
  const std::string displayName = FindName(catalog, key);
  report.Document().update({{"key", key}, {"displayName", displayName}});
  if (displayName.empty()) {
    RemarkUnknownKey(catalog.Keys(), key);
    return report.Finish(kNothingMatched);
  }
  report.Print(Printable(displayName) + '\n');
  return report.Finish();
}

}  // namespace

extern const Command kNameCommand = {
    "name",
    "Print the display name of a module",
    "  mmcat name Charmap.3128F3C8:1033\n",
    PrepareCommand<Options, AddArguments, Run>,
};
