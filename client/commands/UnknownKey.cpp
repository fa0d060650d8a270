#include "client/commands/UnknownKey.h"

#include <algorithm>
#include <set>

#include "client/catalog/SearchedPlaces.h"
#include "client/catalog/Wildcards.h"
#include "client/commands/Advice.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Report.h"
#include "client/terminal/Text.h"

namespace mmcat {

namespace {

constexpr size_t kMostCandidates = 8;

/// The end of a remark on an ambiguous word: the pattern that means all of its `candidates`. Empty
/// if the pattern would match another number of modules.
std::string SuggestPattern(const std::vector<NamedModule>& modules, const std::string& word,
                           size_t candidates) {
  const std::string pattern = word + '*';
  return FindMatching(modules, pattern).size() == candidates ? "; \"" + pattern + "\" means all"
                                                             : "";
}

/// The keys of the modules that a word "NAME:LANGUAGE" would name without its language.
std::vector<std::string> FindOtherLanguages(const std::vector<NamedModule>& modules,
                                            const std::string& word) {
  const size_t colon = word.rfind(':');
  std::vector<std::string> keys;
  if (colon == std::string::npos ||
      word.find_first_not_of("-0123456789", colon + 1) != std::string::npos) {
    return keys;
  }
  for (const size_t position : MatchName(modules, word.substr(0, colon)).modules) {
    keys.push_back(modules[position].key);
  }
  return keys;
}

}  // namespace

void PrintUnknownKey(const std::vector<NamedModule>& modules, const std::string& word,
                     const std::string& command, Patterns patterns) {
  std::vector<std::string> candidates = MatchName(modules, word).candidates;
  if (!candidates.empty()) {
    const size_t count = candidates.size();
    // Versions of a module have the same key.
    std::set<std::string> seen;
    candidates.erase(
        std::remove_if(candidates.begin(), candidates.end(),
                       [&](const std::string& key) { return !seen.insert(key).second; }),
        candidates.end());
    PrintRemark(word + ": this may be " + JoinAlternatives(candidates, kMostCandidates) +
                (patterns == Patterns::Accepted ? SuggestPattern(modules, word, count) : ""));
    return;
  }
  const std::string advice = AdviseOnFile(word, command);
  if (!advice.empty()) {
    PrintRemark(word + ": " + advice);
    return;
  }
  const std::vector<std::string> languages = FindOtherLanguages(modules, word);
  if (!languages.empty()) {
    PrintRemark(word + ": the catalog has no such language of it, only " +
                JoinAlternatives(languages, kMostCandidates));
    return;
  }
  std::vector<std::string> keys;
  keys.reserve(modules.size());
  for (const NamedModule& module : modules) {
    keys.push_back(module.key);
  }
  const std::vector<std::string> nearest = FindNearestNames(word, keys);
  PrintRemark(word +
              (HasWildcard(word) ? ": no module matches" : ": the catalog has no such module") +
              (nearest.empty() ? "; mmcat list shows those it has" : FormatSuggestion(nearest)));
  PrintSearchedPlaces();
}

}  // namespace mmcat
