#include <CLI/CLI.hpp>
#include <algorithm>
#include <set>

#include "client/catalog/Catalog.h"
#include "client/catalog/ListedModules.h"
#include "client/catalog/ModuleNames.h"
#include "client/catalog/SearchedPlaces.h"
#include "client/catalog/Wildcards.h"
#include "client/commands/Advice.h"
#include "client/commands/Commands.h"
#include "client/commands/NoModules.h"

namespace mmcat {

namespace {

struct Options {
  std::vector<std::string> patterns;  ///< empty for all modules
};

void AddArguments(CLI::App& parser, Options& options) {
  parser.add_option("PATTERN", options.patterns,
                    "Only modules with this in their key, name or file; * and ? are wildcards");
}

/// Returns whether a name of the module matches a pattern, or contains a word without wildcards.
bool Matches(const ListedModule& module, const std::string& word) {
  const std::string pattern = HasWildcard(word) ? word : '*' + word + '*';
  const bool hasName = module.displayName != module.path;  // the path stands in for a name
  return (hasName && MatchesPattern(pattern, module.displayName)) ||
         MatchesPattern(pattern, NamedModule{module.key, module.moduleId, module.path});
}

/// Removes the modules that match none of the patterns. Prints a remark for each pattern without a
/// match.
ExitCode Select(const std::vector<std::string>& patterns, std::vector<ListedModule>& modules) {
  std::vector<bool> isWanted(modules.size(), patterns.empty());
  ExitCode outcome = kSuccess;
  for (const std::string& pattern : patterns) {
    bool isMatched = false;
    for (size_t i = 0; i < modules.size(); ++i) {
      const bool matches = Matches(modules[i], pattern);
      isWanted[i] = isWanted[i] || matches;
      isMatched = isMatched || matches;
    }
    if (!isMatched) {
      const std::string advice = AdviseOnFile(pattern, "list");
      PrintRemark(pattern + ": " + (advice.empty() ? "no module matches" : advice));
      if (advice.empty()) {
        PrintSearchedPlaces();
      }
      outcome = kNothingMatched;
    }
  }
  size_t position = 0;
  modules.erase(std::remove_if(modules.begin(), modules.end(),
                               [&](const ListedModule&) { return !isWanted[position++]; }),
                modules.end());
  return outcome;
}

/// Keeps unreadable files from deciding the exit code unless they are among the modules that were
/// asked for.
void AcceptOthers(const std::vector<ListedModule>& wanted, Report& report) {
  std::set<std::string> paths;
  for (const ListedModule& module : wanted) {
    paths.insert(module.path);
  }
  report.AcceptFailuresBeside(paths);
}

ExitCode Run(const Options& options, const OutputOptions& output) {
  Report report("list", output, 2);
  std::vector<ListedModule> modules = ReadModules(*Catalog().Modules(), report);
  ExitCode outcome = RequireModules(modules.size());
  if (outcome == kSuccess) {
    outcome = Select(options.patterns, modules);
  }
  if (!options.patterns.empty()) {
    AcceptOthers(modules, report);
  }
  if (report.IsJson()) {
    report.Document()["modules"] = MakeModulesJson(modules);
  } else if (report.Format() == OutputFormat::Csv) {
    report.PrintConverted(FormatModulesCsv(modules));
  } else if (!modules.empty()) {
    report.Print(FormatModules(modules));
  }
  return report.Finish(outcome);
}

}  // namespace

extern const Command kListCommand = {
    "list",
    "List the modules in the catalog",
    "  mmcat list\n"
    "  mmcat list --folder samples --recursive\n"
    "  mmcat list zip ink                     modules with this in their names\n"
    "  mmcat list --format csv > modules.csv\n",
    PrepareCommand<Options, AddArguments, Run>,
    {OutputFormat::Csv},
};

}  // namespace mmcat
