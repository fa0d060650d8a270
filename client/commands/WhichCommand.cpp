#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "client/catalog/Catalog.h"
#include "client/catalog/CatalogFacts.h"
#include "client/catalog/IndexFiles.h"
#include "client/commands/Commands.h"
#include "client/terminal/TextTable.h"
#include "merge/FileSearch.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// A module that delivers a file. The members below `source` are empty if an index is the source.
struct Delivery {
  std::string file;
  std::string moduleKey;
  std::string displayName;
  std::string source;  ///< an index table, or "File table"
  std::string fileKey;
  std::string directory;
  std::string version;
  std::string path;  ///< the module file
};

/// The name of a file without its path.
std::string GetFileName(const std::string& file) {
  return file.substr(file.find_last_of("\\/:") + 1);
}

/// Asks the catalog, which looks in the index tables. The tables themselves are read for the names
/// that match a pattern, and for which of them has the answer.
std::vector<Delivery> FindInIndexes(const Catalog& catalog, const std::string& pattern,
                                    Report& report) {
  const std::string wanted = qm::text::FoldCase(pattern);
  std::map<std::string, std::vector<qm::merge::IndexEntry>>
      entries;  // by file name, in the order of the tables
  for (qm::merge::IndexEntry& entry : ReadIndexEntries(report)) {
    if (entry.table != kDisplayNameIndex &&
        qm::merge::MatchesPattern(qm::text::FoldCase(entry.name), wanted)) {
      entries[qm::text::FoldCase(entry.name)].push_back(std::move(entry));
    }
  }
  if (!qm::merge::HasWildcard(pattern)) {
    entries[wanted];  // ask the catalog in any case
  }
  std::vector<Delivery> deliveries;
  for (const auto& [folded, named] : entries) {
    const std::string name = named.empty() ? pattern : named.front().name;
    const std::string key = catalog.FindModuleForFile(name);
    if (key.empty()) {
      continue;
    }
    const auto entry = std::find_if(
        named.begin(), named.end(),
        [&](const qm::merge::IndexEntry& candidate) { return candidate.moduleKey == key; });
    deliveries.push_back({name, key, catalog.FindDisplayName(key),
                          entry == named.end() ? "index" : entry->table, "", "", "", ""});
  }
  return deliveries;
}

void FindInFileTables(const std::string& pattern, std::vector<Delivery>& deliveries,
                      Report& report) {
  const CatalogFacts catalog = ReadCatalogFacts(kFileTables, report);
  for (const auto& [position, file] : qm::merge::FindFiles(catalog.mergeModules, pattern)) {
    const ListedModule& module = catalog.modules[position];
    deliveries.push_back({std::string(file->name), module.key, module.displayName, "File table",
                          std::string(file->key), std::string(file->directory),
                          std::string(file->version), module.path});
  }
}

std::string FormatDeliveries(const std::vector<Delivery>& deliveries) {
  TextTable table({"File", "Module", "Display name", "Source", "File key", "Directory", "Version",
                   "Module path"});
  for (const Delivery& delivery : deliveries) {
    table.AddRow({delivery.file, delivery.moduleKey, delivery.displayName, delivery.source,
                  delivery.fileKey, delivery.directory, delivery.version, delivery.path});
  }
  return table.ToString("");
}

Json MakeDeliveriesJson(const std::vector<Delivery>& deliveries) {
  Json list = Json::array();
  for (const Delivery& delivery : deliveries) {
    list.push_back({{"file", delivery.file},
                    {"module", delivery.moduleKey},
                    {"displayName", delivery.displayName},
                    {"source", delivery.source},
                    {"fileKey", delivery.fileKey},
                    {"directory", delivery.directory},
                    {"version", delivery.version},
                    {"path", delivery.path}});
  }
  return list;
}

struct Options {
  std::string file;  ///< a name or path, possibly with wildcards
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("FILE", options.file, "File name; * and ? are wildcards")->required();
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const std::string& file = options.file;
  Report report("which", output);
  const std::string pattern = GetFileName(file);
  std::vector<Delivery> deliveries = FindInIndexes(Catalog(), pattern, report);
  if (deliveries.empty() || qm::merge::HasWildcard(pattern)) {
    FindInFileTables(pattern, deliveries, report);
  }
  report.Document().update({{"file", file}, {"deliveries", MakeDeliveriesJson(deliveries)}});
  if (deliveries.empty()) {
    PrintRemark(file + ": no module delivers this file");
    return report.Finish(kNothingMatched);
  }
  report.Print(FormatDeliveries(deliveries));
  return report.Finish();
}

}  // namespace

extern const Command kWhichCommand = {
    "which",
    "List the modules that deliver a file",
    "  mmcat which msgbox.dll\n"
    "  mmcat which \"*.ocx\" --folder C:\\Modules\n",
    PrepareCommand<Options, AddArguments, Run>,
};

}  // namespace mmcat
