#include <CLI/CLI.hpp>
#include <algorithm>

#include "client/catalog/Catalog.h"
#include "client/catalog/Properties.h"
#include "client/catalog/Wildcards.h"
#include "client/commands/Commands.h"
#include "client/commands/UnknownKey.h"
#include "client/terminal/Text.h"

namespace mmcat {

namespace {

/// A module that a word may mean.
struct Candidate {
  std::string key;
  std::string displayName;
};

/// Finds the display names of the modules that a word names, each once, in the index of module
/// names or else in the catalog.
std::vector<Candidate> FindNames(const Catalog& catalog, const std::string& word) {
  std::string indexed = catalog.FindDisplayName(word);
  if (indexed != word) {
    return {{word, std::move(indexed)}};
  }
  std::vector<Candidate> candidates;
  ForEachItem<IMergeModule>(*catalog.FindNamedModules(word, ""), [&](IMergeModule& module) {
    Candidate candidate{ReadText(module, &IMergeModule::get_Key),
                        ReadText(module, &IMergeModule::get_DisplayName)};
    const auto isKnown = [&](const Candidate& other) {
      return other.displayName == candidate.displayName;
    };
    if (std::none_of(candidates.begin(), candidates.end(), isKnown)) {
      candidates.push_back(std::move(candidate));
    }
  });
  return candidates;
}

void PrintCandidates(const std::string& word, const std::vector<Candidate>& candidates) {
  constexpr size_t kMost = 8;
  std::vector<std::string> texts;
  texts.reserve(candidates.size());
  for (const Candidate& candidate : candidates) {
    texts.push_back(candidate.key + " (" + candidate.displayName + ')');
  }
  PrintRemark(word + ": this may be " + JoinAlternatives(texts, kMost));
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
  // A pattern may match modules with different names, so it is refused.
  const bool isPattern = HasWildcard(key);
  const std::vector<Candidate> candidates =
      isPattern ? std::vector<Candidate>() : FindNames(catalog, key);
  const std::string displayName = candidates.size() == 1 ? candidates.front().displayName : "";
  report.Document().update({{"key", key}, {"displayName", displayName}});
  if (isPattern) {
    PrintRemark(key + ": this command takes no patterns; mmcat list " + QuoteArgument(key) +
                " prints the names of all that match");
  } else if (candidates.size() > 1) {
    PrintCandidates(key, candidates);
  } else if (displayName.empty()) {
    PrintUnknownKey(catalog.Names(), key, "name KEY", Patterns::Refused);
  }
  if (displayName.empty()) {
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
