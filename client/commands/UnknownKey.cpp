#include "client/commands/UnknownKey.h"

#include <algorithm>

#include "client/commands/Advice.h"
#include "client/terminal/NearestNames.h"
#include "client/terminal/Report.h"

namespace mmcat {

namespace {

std::string JoinCandidates(const std::vector<std::string>& candidates) {
  constexpr size_t kMost = 8;
  std::string text;
  for (size_t i = 0; i < std::min(candidates.size(), kMost); ++i) {
    text += (i == 0 ? "" : i + 1 == candidates.size() ? " or " : ", ") + candidates[i];
  }
  return candidates.size() > kMost
             ? text + " or " + std::to_string(candidates.size() - kMost) + " others"
             : text;
}

}  // namespace

void PrintUnknownKey(const std::vector<NamedModule>& modules, const std::string& word) {
  const std::vector<std::string> candidates = MatchName(modules, word).candidates;
  if (!candidates.empty()) {
    PrintRemark(word + ": this may be " + JoinCandidates(candidates));
    return;
  }
  const std::string advice = AdviseOnFile(word);
  if (!advice.empty()) {
    PrintRemark(word + ": " + advice);
    return;
  }
  std::vector<std::string> keys;
  keys.reserve(modules.size());
  for (const NamedModule& module : modules) {
    keys.push_back(module.key);
  }
  PrintRemark(word + ": the catalog has no such module" +
              FormatSuggestion(FindNearestNames(word, keys)));
}

}  // namespace mmcat
