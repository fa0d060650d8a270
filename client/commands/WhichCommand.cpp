#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <optional>
#include <set>

#include "client/catalog/Catalog.h"
#include "client/catalog/ModuleNames.h"
#include "client/catalog/ModuleSet.h"
#include "client/catalog/SearchedPlaces.h"
#include "client/catalog/UserPath.h"
#include "client/commands/Advice.h"
#include "client/commands/Commands.h"
#include "client/commands/TargetFolders.h"
#include "client/terminal/Csv.h"
#include "client/terminal/Text.h"
#include "client/terminal/TextTable.h"
#include "common/FolderFiles.h"
#include "text/Utf.h"

namespace mmcat {

namespace {

/// A module that delivers a file.
struct Delivery {
  DelivererFacts facts;
  bool isPresent = false;
  std::string displayName;
  std::string path;  ///< the module file; empty if it is not on this machine
};

/// The name that the index has for a module that the set does not contain; empty if it has none.
std::string FindIndexedName(const Catalog& catalog, const std::string& key) {
  const std::string name = catalog.FindDisplayName(key);
  return name == key ? "" : name;
}

std::vector<Delivery> FindDeliveries(const ModuleSet& set, const std::string& pattern) {
  std::optional<Catalog> catalog;  // made when first needed
  std::vector<Delivery> deliveries;
  for (DelivererFacts& facts : set.FindDeliverers(pattern)) {
    Delivery& delivery = deliveries.emplace_back();
    if (facts.module) {
      const ModuleFacts& module = set.Modules()[*facts.module];
      delivery.isPresent = module.isPresent;
      delivery.displayName = module.displayName;
      delivery.path = module.path;
    } else {
      if (!catalog) {
        catalog.emplace();
      }
      delivery.displayName = FindIndexedName(*catalog, facts.moduleKey);
    }
    delivery.facts = std::move(facts);
  }
  return deliveries;
}

std::string FormatSource(const Delivery& delivery) {
  const std::string& indexFile = delivery.facts.indexFile;
  const std::string own = delivery.isPresent ? "File table" : "gallery";
  return delivery.facts.copies.empty() ? indexFile
         : indexFile.empty()           ? own
                                       : own + ", " + indexFile;
}

std::string FormatVersions(const std::vector<FileFacts>& copies) {
  constexpr size_t kMost = 10;
  std::vector<std::string> versions;
  std::set<std::string> seen;
  for (const FileFacts& copy : copies) {
    if (!copy.version.empty() && seen.insert(copy.version).second) {
      versions.push_back(copy.version);
    }
  }
  return JoinSome(versions, kMost);
}

std::string FormatFolders(const std::vector<FileFacts>& copies) {
  std::vector<const FileFacts*> list;
  list.reserve(copies.size());
  for (const FileFacts& copy : copies) {
    list.push_back(&copy);
  }
  return FormatTargetFolders(list);
}

std::string FormatCopies(const DelivererFacts& facts) {
  const size_t copies = facts.copies.size();
  return copies > 1 ? facts.file + " (x" + std::to_string(copies) + ')' : facts.file;
}

std::string FormatDeliveries(const std::vector<Delivery>& deliveries) {
  TextTable table({"File", "Module file", "Display name", "Version", "Present", "Source", "Problem",
                   "Target path", "Module", "Module path"});
  table.IdentifyBy("Module file");
  for (const Delivery& delivery : deliveries) {
    const DelivererFacts& facts = delivery.facts;
    const std::string name = delivery.displayName == delivery.path ? "" : delivery.displayName;
    table.AddRow({FormatCopies(facts), GetFileName(delivery.path), name,
                  FormatVersions(facts.copies), delivery.isPresent ? "yes" : "no",
                  FormatSource(delivery), facts.problem, FormatFolders(facts.copies),
                  facts.moduleKey, delivery.path});
  }
  return table.ToString("");
}

Json MakeCopiesJson(const std::vector<FileFacts>& copies) {
  Json list = Json::array();
  for (const FileFacts& copy : copies) {
    list.push_back({{"key", copy.key},
                    {"directory", copy.directory},
                    {"targetPath", copy.targetPath},
                    {"isRedirected", copy.isRedirected},
                    {"fileSize", MakeNumberOrNull(copy.size)},
                    {"version", copy.version}});
  }
  return list;
}

const char* GetSource(const DelivererFacts& facts) {
  return facts.copies.empty() ? "index" : facts.indexFile.empty() ? "file-table" : "both";
}

Json MakeDeliveriesJson(const std::vector<Delivery>& deliveries) {
  Json list = Json::array();
  for (const Delivery& delivery : deliveries) {
    const DelivererFacts& facts = delivery.facts;
    list.push_back({{"file", facts.file},
                    {"module", facts.moduleKey},
                    {"displayName", delivery.displayName},
                    {"source", GetSource(facts)},
                    {"indexFile", facts.indexFile},
                    {"present", delivery.isPresent},
                    {"path", delivery.path},
                    {"copies", MakeCopiesJson(facts.copies)},
                    {"problem", facts.problem}});
  }
  return list;
}

/// The deliveries as CSV, with a row for each copy of a file, or one if only an index names it.
std::string FormatDeliveriesCsv(const std::vector<Delivery>& deliveries) {
  Json rows = Json::array();
  for (const Json& delivery : MakeDeliveriesJson(deliveries)) {
    for (const Json& copy : delivery["copies"]) {
      rows.push_back(delivery);
      rows.back().update(copy);
    }
    if (delivery["copies"].empty()) {
      rows.push_back(delivery);
    }
  }
  return FormatCsv(
      {"file", "module", "displayName", "source", "indexFile", "present", "path", "key",
       "directory", "targetPath", "isRedirected", "fileSize", "version", "problem"},
      rows);
}

struct Options {
  std::vector<std::string> files;  ///< names or paths, possibly with wildcards
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("FILE", options.files, "File names; * and ? are wildcards")->required();
}

/// A remark on a name that no module delivers.
std::string DescribeNothing(FileSuggestions& suggestions, const std::string& file) {
  if (IsFolder(file)) {
    return file + ": this is a folder; mmcat which FILE --folder " + QuoteArgument(file) +
           " looks in it";
  }
  if (qm::common::HasExtension(qm::text::ToWide(file), L".msm")) {
    return file + ": this is a module, and no module delivers it; mmcat show describes it";
  }
  return file + ": no module delivers this file" + suggestions.Suggest(GetFileName(file));
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("which", output, 3);
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::ModulesAndIndexes, report);
  FileSuggestions suggestions(set);
  std::vector<Delivery> deliveries;
  ExitCode outcome = kSuccess;
  for (const std::string& file : options.files) {
    std::vector<Delivery> found = FindDeliveries(set, GetFileName(file));
    if (found.empty()) {
      PrintRemark(DescribeNothing(suggestions, file));
      outcome = kNothingMatched;
    }
    std::move(found.begin(), found.end(), std::back_inserter(deliveries));
  }
  const auto isFolder = [](const std::string& file) { return IsFolder(file); };
  if (outcome == kNothingMatched &&
      std::none_of(options.files.begin(), options.files.end(), isFolder)) {
    PrintSearchedPlaces();
  }
  report.Document().update(
      {{"files", options.files}, {"deliveries", MakeDeliveriesJson(deliveries)}});
  if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatDeliveriesCsv(deliveries));
  } else if (!deliveries.empty()) {
    report.Print(FormatDeliveries(deliveries));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kWhichCommand = {
    "which",
    "List the modules that deliver files",
    "  mmcat which LarkfieldZip32.dll\n"
    "  mmcat which \"*.ocx\" inkrib.tlb --folder samples/modules\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
