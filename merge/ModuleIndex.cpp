#include "merge/ModuleIndex.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>

#include "merge/JoinTexts.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

PlatformMatch MatchPlatform(const std::string& wanted, const std::string& platform) {
  return wanted.empty() || platform.empty() || wanted == platform ? PlatformMatch::Same
         : platform == "intel"                                    ? PlatformMatch::Other
                                                                  : PlatformMatch::Wrong;
}

LanguageMatch MatchLanguage(long wanted, long language) {
  if (language == wanted) {
    return LanguageMatch::Exact;
  }
  if (language == 0) {
    return LanguageMatch::Neutral;
  }
  return wanted != 0 && (MatchesLanguage(wanted, language) || MatchesLanguage(language, wanted))
             ? LanguageMatch::Covering
             : LanguageMatch::Other;
}

}  // namespace

std::string GetPlatform(const Module& module) {
  static constexpr std::string_view kKnown[] = {"intel", "x64", "intel64", "arm64"};
  std::string platform = text::FoldCase(module.platform);
  if (platform.empty() && module.tables) {
    return "intel";
  }
  if (platform == "amd64") {
    return "x64";
  }
  const bool isKnown =
      std::find(std::begin(kKnown), std::end(kKnown), platform) != std::end(kKnown);
  return isKnown ? platform : std::string();
}

ModuleIndex::ModuleIndex(const std::vector<Module>& modules)
    : m_modules(modules), m_ranks(modules.size()) {
  for (size_t position = 0; position < modules.size(); ++position) {
    m_byId[text::FoldCase(modules[position].moduleId)].inOrder.push_back(position);
  }
  for (auto& [id, same] : m_byId) {
    if (same.inOrder.size() < 2) {
      continue;
    }
    same.byVersion = same.inOrder;
    std::sort(same.byVersion.begin(), same.byVersion.end(), [&](size_t a, size_t b) {
      const int order = CompareVersionTexts(modules[a].version, modules[b].version);
      return order != 0 ? order > 0 : a < b;
    });
    size_t higher = 0;
    const Module* previous = nullptr;
    for (size_t at = 0; at < same.byVersion.size(); ++at) {
      const Module& module = modules[same.byVersion[at]];
      higher += previous && CompareVersionTexts(previous->version, module.version) != 0 ? 1 : 0;
      m_ranks[same.byVersion[at]] = {higher, at};
      previous = &module;
    }
  }
}

const ModuleIndex::SameId* ModuleIndex::Find(const std::string& moduleId) const {
  const auto found = m_byId.find(text::FoldCase(moduleId));
  return found == m_byId.end() ? nullptr : &found->second;
}

const std::vector<size_t>& ModuleIndex::FindById(const std::string& moduleId) const {
  static const std::vector<size_t> none;
  const SameId* const same = Find(moduleId);
  return same ? same->inOrder : none;
}

std::vector<size_t> ModuleIndex::FindByKey(const std::string& key) const {
  std::vector<size_t> positions;
  const size_t first = std::min(key.find(':'), key.size());
  AddByIdAndLanguage(key.substr(0, first), key.substr(std::min(first + 1, key.size())), positions);
  if (first < key.size()) {
    AddByIdAndLanguage(key, "", positions);
    const size_t last = key.rfind(':');
    if (last != first) {
      AddByIdAndLanguage(key.substr(0, last), key.substr(last + 1), positions);
    }
    std::sort(positions.begin(), positions.end());
  }
  return positions;
}

/// Adds the modules of an ID and a language, or of any language if that is empty.
void ModuleIndex::AddByIdAndLanguage(const std::string& moduleId, const std::string& language,
                                     std::vector<size_t>& positions) const {
  for (const size_t position : FindById(moduleId)) {
    if (language.empty() || language == std::to_string(m_modules[position].language)) {
      positions.push_back(position);
    }
  }
}

std::vector<Candidate> ModuleIndex::FindCandidates(const Requirement& requirement,
                                                   const Module& user) const {
  std::vector<Candidate> candidates;
  const SameId* const same = requirement.moduleId.empty() ? nullptr : Find(requirement.moduleId);
  if (!same) {
    return candidates;
  }
  const auto isHighEnough = [&](size_t position) {
    return requirement.version.empty() ||
           CompareVersionTexts(m_modules[position].version, requirement.version) >= 0;
  };
  const auto end =
      std::partition_point(same->ByVersion().begin(), same->ByVersion().end(), isHighEnough);
  const long language = MatchesLanguage(requirement.language, user.language)
                            ? user.language
                            : requirement.language.value_or(0);
  const std::string platform = GetPlatform(user);
  for (auto position = same->ByVersion().begin(); position != end; ++position) {
    const Module& module = m_modules[*position];
    if (MatchesLanguage(requirement.language, module.language)) {
      candidates.push_back({*position, MatchPlatform(platform, GetPlatform(module)),
                            MatchLanguage(language, module.language)});
    }
  }
  std::sort(candidates.begin(), candidates.end(), [&](const Candidate& a, const Candidate& b) {
    return std::tie(a.platform, a.language, m_ranks[a.module].modulesBefore) <
           std::tie(b.platform, b.language, m_ranks[b.module].modulesBefore);
  });
  if (!candidates.empty() && candidates.front().platform != PlatformMatch::Wrong) {
    const auto isWrong = [](const Candidate& one) { return one.platform == PlatformMatch::Wrong; };
    candidates.erase(std::find_if(candidates.begin(), candidates.end(), isWrong), candidates.end());
  }
  return candidates;
}

Choice ModuleIndex::Choose(const Requirement& requirement, const Module& user) const {
  const std::vector<Candidate> candidates = FindCandidates(requirement, user);
  if (candidates.empty()) {
    return {std::nullopt, ExplainMissing(requirement)};
  }
  const size_t chosen = candidates.front().module;
  return {chosen, ExplainChoice(*this, requirement, candidates, chosen)};
}

std::string ModuleIndex::ExplainMissing(const Requirement& requirement) const {
  if (requirement.moduleId.empty()) {
    return "it names no module";
  }
  const std::vector<size_t>& sameId = FindById(requirement.moduleId);
  if (sameId.empty()) {
    return "no module has this ID";
  }
  const std::string language = std::to_string(requirement.language.value_or(0));
  if (std::none_of(sameId.begin(), sameId.end(), [&](size_t position) {
        return MatchesLanguage(requirement.language, m_modules[position].language);
      })) {
    return "no module of this ID is for " + language;
  }
  return "every version " + (language == "0" ? "" : "for " + language + ' ') + "is lower than " +
         requirement.version;
}

std::string ExplainChoice(const ModuleIndex& set, const Requirement& requirement,
                          const std::vector<Candidate>& candidates, size_t chosen) {
  if (candidates.size() == 1) {
    return "the only candidate";
  }
  const auto isChosen = [&](const Candidate& one) { return one.module == chosen; };
  const Candidate& choice = *std::find_if(candidates.begin(), candidates.end(), isChosen);
  const std::string& version = set.Modules()[chosen].version;
  bool isPlatformRare = false;
  bool isLanguageRare = false;
  bool isHighest = true;
  size_t sameVersion = 0;
  size_t ofLanguage = 0;
  size_t equal = 0;
  for (const Candidate& one : candidates) {
    isPlatformRare = isPlatformRare || one.platform > choice.platform;
    if (one.platform != choice.platform) {
      continue;
    }
    isLanguageRare = isLanguageRare || one.language > choice.language;
    if (one.language != choice.language) {
      continue;
    }
    ++ofLanguage;
    const int order = CompareVersionTexts(version, set.Modules()[one.module].version);
    isHighest = isHighest && order >= 0;
    sameVersion += order == 0 ? 1 : 0;
    equal += order == 0 && one.module >= chosen ? 1 : 0;
  }
  std::vector<std::string> reasons;
  if (isPlatformRare) {
    reasons.push_back("for " + set.Modules()[chosen].platform);
  }
  if (isLanguageRare) {
    reasons.emplace_back(choice.language == LanguageMatch::Exact &&
                                 set.Modules()[chosen].language != 0
                             ? "of exactly this language"
                         : choice.language == LanguageMatch::Covering ? "of this language"
                                                                      : "language-neutral");
  }
  if (isHighest && sameVersion < ofLanguage) {
    reasons.push_back("the highest version of " + std::to_string(ofLanguage));
  }
  if (isHighest && sameVersion > 1 && equal == sameVersion) {
    reasons.push_back("the first of " + std::to_string(sameVersion));
  }
  if (!requirement.version.empty()) {
    reasons.push_back("at least " + requirement.version);
  }
  return JoinTexts(reasons, ", ");
}

}  // namespace qm::merge
