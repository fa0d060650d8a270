#include <CLI/CLI.hpp>

#include "client/catalog/ModuleSet.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"
#include "client/terminal/Csv.h"
#include "client/terminal/TextTable.h"

namespace mmcat {

namespace {

std::string FormatFiles(const std::vector<ModuleFacts>& modules,
                        const std::vector<FileFacts>& files) {
  if (files.empty()) {
    return "No files\n";
  }
  TextTable table({"Module", "File", "Target path", "Redirected", "Size", "Version"});
  for (const FileFacts& file : files) {
    table.AddRow({modules[file.module].key, file.name, file.targetPath,
                  file.isRedirected ? "yes" : "", file.size ? std::to_string(*file.size) : "",
                  file.version});
  }
  return table.ToString("");
}

Json MakeFilesJson(const std::vector<ModuleFacts>& modules, const std::vector<FileFacts>& files) {
  Json list = Json::array();
  for (const FileFacts& file : files) {
    list.push_back({{"module", modules[file.module].key},
                    {"path", modules[file.module].path},
                    {"key", file.key},
                    {"name", file.name},
                    {"shortName", file.shortName},
                    {"directory", file.directory},
                    {"targetPath", file.targetPath},
                    {"isRedirected", file.isRedirected},
                    {"fileSize", MakeNumberOrNull(file.size)},
                    {"version", file.version}});
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
  const ModuleSet set;
  set.AddFailures(ModuleSet::FailuresOf::Modules, report);
  const std::vector<FileFacts> files = set.FindFiles(pattern);
  ExitCode outcome = RequireModules(set.Modules().size());
  if (outcome == kSuccess && files.empty() && !pattern.empty()) {
    PrintRemark(pattern + ": no module has a matching file");
    outcome = kNothingMatched;
  }
  if (report.IsJson()) {
    report.Document()["files"] = MakeFilesJson(set.Modules(), files);
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatCsv({"module", "path", "key", "name", "shortName", "directory",
                                     "targetPath", "isRedirected", "fileSize", "version"},
                                    MakeFilesJson(set.Modules(), files)));
  } else if (outcome == kSuccess) {
    report.Print(FormatFiles(set.Modules(), files));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kFilesCommand = {
    "files",
    "List the files of all modules",
    "  mmcat files --folder C:\\Modules\n"
    "  mmcat files \"msg*.dll\"\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
