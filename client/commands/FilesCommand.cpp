#include <CLI/CLI.hpp>
#include <map>
#include <tuple>

#include "client/catalog/ModuleSet.h"
#include "client/catalog/SearchedPlaces.h"
#include "client/commands/Advice.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"
#include "client/commands/TargetFolders.h"
#include "client/terminal/Csv.h"
#include "client/terminal/TextTable.h"
#include "text/Fold.h"

namespace mmcat {

namespace {

/// Copies of one file in one module.
using ListedFile = std::vector<const FileFacts*>;

/// Groups the files of a module that differ only in where they go.
std::vector<ListedFile> JoinCopies(const std::vector<FileFacts>& files) {
  using Identity = std::tuple<size_t, std::string, std::optional<long>, std::string, bool>;
  std::map<Identity, size_t> positions;
  std::vector<ListedFile> list;
  for (const FileFacts& file : files) {
    const auto [found, isNew] = positions.try_emplace(
        {file.module, qm::text::FoldCase(file.name), file.size, file.version, file.isRedirected},
        list.size());
    if (isNew) {
      list.emplace_back();
    }
    list[found->second].push_back(&file);
  }
  return list;
}

std::string FormatFiles(const std::vector<ModuleFacts>& modules,
                        const std::vector<FileFacts>& files) {
  if (files.empty()) {
    return "No files\n";
  }
  TextTable table({"File", "Module", "Version", "Size", "Redirected", "Target path"});
  for (const ListedFile& listed : JoinCopies(files)) {
    const FileFacts& file = *listed.front();
    const std::string copies = listed.size() > 1 ? " (x" + std::to_string(listed.size()) + ')' : "";
    table.AddRow({file.name + copies, modules[file.module].key, file.version,
                  file.size ? std::to_string(*file.size) : "", file.isRedirected ? "yes" : "",
                  FormatTargetFolders(listed)});
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
    PrintRemark(pattern + ": no module has a matching file" +
                FileSuggestions(set).Suggest(pattern));
    PrintSearchedPlaces();
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
    "  mmcat files --folder samples/modules\n"
    "  mmcat files \"lark*.dll\"\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
