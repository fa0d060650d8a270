#include <CLI/CLI.hpp>

#include "client/catalog/CatalogFacts.h"
#include "client/commands/Commands.h"
#include "client/terminal/TextTable.h"
#include "merge/FileSearch.h"

namespace mmcat {

namespace {

std::string FormatFiles(const CatalogFacts& catalog,
                        const std::vector<qm::merge::FoundFile>& files) {
  if (files.empty()) {
    return "No files\n";
  }
  TextTable table({"Module", "File", "Directory", "Size", "Version"});
  for (const auto& [position, file] : files) {
    table.AddRow({catalog.modules[position].key, std::string(file->name),
                  std::string(file->directory), file->size ? std::to_string(*file->size) : "",
                  std::string(file->version)});
  }
  return table.ToString("");
}

Json MakeFilesJson(const CatalogFacts& catalog, const std::vector<qm::merge::FoundFile>& files) {
  Json list = Json::array();
  for (const auto& [position, file] : files) {
    list.push_back({{"module", catalog.modules[position].key},
                    {"path", catalog.modules[position].path},
                    {"key", file->key},
                    {"name", file->name},
                    {"shortName", file->shortName},
                    {"directory", file->directory},
                    {"fileSize", file->size ? Json(*file->size) : Json(nullptr)},
                    {"version", file->version}});
  }
  return list;
}

struct Options {
  std::string pattern;  ///< possibly with wildcards; empty for all files
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("PATTERN", options.pattern,
                    "Only files whose names match; * and ? are wildcards");
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  const std::string& pattern = options.pattern;
  Report report("files", output);
  const CatalogFacts catalog = ReadCatalogFacts(kFileTables, report);
  const std::vector<qm::merge::FoundFile> files =
      qm::merge::FindFiles(catalog.mergeModules, pattern.empty() ? "*" : pattern);
  const bool nothingMatched = files.empty() && !pattern.empty();
  if (nothingMatched) {
    PrintRemark(pattern + ": no module has a matching file");
  }
  if (report.IsJson()) {
    report.Document()["files"] = MakeFilesJson(catalog, files);
  } else if (!nothingMatched) {
    report.Print(FormatFiles(catalog, files));
  }
  return report.Finish(nothingMatched ? kNothingMatched : kSuccess);
}

}  // namespace

extern const Command kFilesCommand = {
    "files",
    "List the files of all modules",
    "  mmcat files --folder C:\\Modules\n"
    "  mmcat files \"msg*.dll\"\n",
    PrepareCommand<Options, AddArguments, Run>,
};

}  // namespace mmcat
