#include "merge/ModuleIndex.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>
#include <unordered_set>

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

/// Returns what ranks candidates before their versions do.
std::tuple<bool, PlatformMatch, LanguageMatch> MeritOf(const Candidate& candidate) {
  return {candidate.carried != nullptr, candidate.platform, candidate.language};
}

/// Keeps the first entry of each module.
template <class Entry>
void RemoveRepeated(std::vector<Entry>& entries) {
  std::unordered_set<size_t> seen;
  entries.erase(
      std::remove_if(entries.begin(), entries.end(),
                     [&](const Entry& entry) { return !seen.insert(entry.module).second; }),
      entries.end());
}

/// Removes the candidates of a wrong platform if others have the required ID too. Those that carry
/// what is required stay: it is in the product if they are, whatever their platform.
void RemoveWrongPlatform(std::vector<Candidate>& candidates) {
  const auto isWrong = [](const Candidate& one) {
    return !one.carried && one.platform == PlatformMatch::Wrong;
  };
  if (std::any_of(candidates.begin(), candidates.end(), [](const Candidate& one) {
        return !one.carried && one.platform != PlatformMatch::Wrong;
      })) {
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isWrong),
                     candidates.end());
  }
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
  m_platforms.reserve(modules.size());
  for (size_t position = 0; position < modules.size(); ++position) {
    m_platforms.push_back(GetPlatform(modules[position]));
    m_byId[text::FoldCase(modules[position].moduleId)].inOrder.push_back(position);
    AddCarried(position);
  }
  for (auto& [id, same] : m_byId) {
    RankVersions(same);
  }
}

void ModuleIndex::AddCarried(size_t position) {
  // By ID and language, of which a module has few.
  std::map<std::pair<SameId*, long>, Carrier> carriers;
  std::map<SameId*, size_t> languages;
  for (const ModuleSignature& carried : m_modules[position].carried) {
    SameId& same = m_byId[text::FoldCase(carried.moduleId)];
    const std::pair place(&same, carried.language.value_or(0));
    auto carrier = carriers.find(place);
    if (carrier == carriers.end()) {
      if (++languages[&same] > kMaxCarriedLanguages) {
        continue;
      }
      carrier = carriers.emplace(place, Carrier{position, place.second, {}}).first;
    }
    carrier->second.byVersion.push_back(&carried);
  }
  for (auto& [place, carrier] : carriers) {
    std::stable_sort(carrier.byVersion.begin(), carrier.byVersion.end(),
                     [](const ModuleSignature* a, const ModuleSignature* b) {
                       return CompareVersionTexts(a->version, b->version) > 0;
                     });
    place.first->carriers.push_back(std::move(carrier));
  }
}

void ModuleIndex::RankVersions(SameId& same) {
  std::sort(same.carriers.begin(), same.carriers.end(), [](const Carrier& a, const Carrier& b) {
    const int order = CompareVersionTexts(a.Highest().version, b.Highest().version);
    return order != 0 ? order > 0 : std::tie(a.module, a.language) < std::tie(b.module, b.language);
  });
  if (same.inOrder.size() < 2) {
    return;
  }
  same.byVersion = same.inOrder;
  std::sort(same.byVersion.begin(), same.byVersion.end(), [&](size_t a, size_t b) {
    const int order = CompareVersionTexts(m_modules[a].version, m_modules[b].version);
    return order != 0 ? order > 0 : a < b;
  });
  size_t higher = 0;
  const Module* previous = nullptr;
  for (size_t at = 0; at < same.byVersion.size(); ++at) {
    const Module& module = m_modules[same.byVersion[at]];
    higher += previous && CompareVersionTexts(previous->version, module.version) != 0 ? 1 : 0;
    m_ranks[same.byVersion[at]] = {higher, at};
    previous = &module;
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
                                                   const Module& user, long userLanguage) const {
  std::vector<Candidate> candidates;
  const SameId* const same = requirement.moduleId.empty() ? nullptr : Find(requirement.moduleId);
  if (!same) {
    return candidates;
  }
  const auto isHighEnough = [&](const std::string& version) {
    return requirement.version.empty() || CompareVersionTexts(version, requirement.version) >= 0;
  };
  const long wanted = MatchesLanguage(requirement.language, userLanguage)
                          ? userLanguage
                          : requirement.language.value_or(0);
  const std::string platform = GetPlatform(user);  // may not be one of the set
  const auto add = [&](size_t position, long language, const ModuleSignature* carried) {
    if (MatchesLanguage(requirement.language, language)) {
      candidates.push_back({position, MatchPlatform(platform, m_platforms[position]),
                            MatchLanguage(wanted, language), carried});
    }
  };
  const auto end = std::partition_point(
      same->ByVersion().begin(), same->ByVersion().end(),
      [&](size_t position) { return isHighEnough(m_modules[position].version); });
  for (auto position = same->ByVersion().begin(); position != end; ++position) {
    add(*position, m_modules[*position].language, nullptr);
  }
  const auto carriersEnd = std::partition_point(
      same->carriers.begin(), same->carriers.end(),
      [&](const Carrier& carrier) { return isHighEnough(carrier.Highest().version); });
  for (auto carrier = same->carriers.begin(); carrier != carriersEnd; ++carrier) {
    add(carrier->module, carrier->language, &carrier->Highest());
  }
  // Within one platform and language, candidates are already in order.
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return MeritOf(a) < MeritOf(b); });
  if (carriersEnd != same->carriers.begin()) {
    RemoveRepeated(candidates);
  }
  RemoveWrongPlatform(candidates);
  return candidates;
}

std::vector<ExcludedModule> ModuleIndex::FindExcluded(size_t excluding,
                                                      const Exclusion& exclusion) const {
  std::vector<ExcludedModule> excluded;
  const SameId* const same = exclusion.moduleId.empty() ? nullptr : Find(exclusion.moduleId);
  if (!same) {
    return excluded;
  }
  for (const size_t position : same->inOrder) {
    const Module& module = m_modules[position];
    if (position != excluding &&
        Excludes(exclusion, module.moduleId, module.language, module.version)) {
      excluded.push_back({position, nullptr});
    }
  }
  for (const Carrier& carrier : same->carriers) {
    if (carrier.module == excluding || !ExcludesLanguage(exclusion, carrier.language)) {
      continue;
    }
    const auto highest = std::partition_point(
        carrier.byVersion.begin(), carrier.byVersion.end(), [&](const ModuleSignature* carried) {
          return !exclusion.maxVersion.empty() &&
                 CompareVersionTexts(carried->version, exclusion.maxVersion) > 0;
        });
    if (highest != carrier.byVersion.end() && ExcludesVersion(exclusion, (*highest)->version)) {
      excluded.push_back({carrier.module, *highest});
    }
  }
  if (!same->carriers.empty()) {
    RemoveRepeated(excluded);
  }
  return excluded;
}

std::map<std::string, std::vector<size_t>> ModuleIndex::GroupBy64BitPlatform(
    const std::vector<size_t>& positions) const {
  std::map<std::string, std::vector<size_t>> groups;
  for (const size_t position : positions) {
    const std::string& platform = m_platforms[position];
    if (!platform.empty() && platform != "intel") {
      groups[platform].push_back(position);
    }
  }
  return groups;
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
  const SameId* const same = Find(requirement.moduleId);
  if (!same) {
    return "no module has this ID";
  }
  const std::string language = std::to_string(requirement.language.value_or(0));
  if (std::none_of(same->inOrder.begin(), same->inOrder.end(),
                   [&](size_t position) {
                     return MatchesLanguage(requirement.language, m_modules[position].language);
                   }) &&
      std::none_of(same->carriers.begin(), same->carriers.end(), [&](const Carrier& carrier) {
        return MatchesLanguage(requirement.language, carrier.language);
      })) {
    return "no module of this ID is for " + language;
  }
  return "every version " + (language == "0" ? "" : "for " + language + ' ') + "is lower than " +
         requirement.version;
}

std::string ModuleIndex::NameOf(const Candidate& candidate) const {
  const std::string& name = GetNameInSentence(m_modules[candidate.module]);
  return candidate.carried ? name + ", which carries " + FormatCarried(*candidate.carried) + ','
                           : name;
}

std::string FormatCarried(const ModuleSignature& carried) {
  return MakeModuleKey(carried.moduleId, carried.language.value_or(0)) + ' ' + carried.version;
}

std::string ExplainChoice(const ModuleIndex& set, const Requirement& requirement,
                          const std::vector<Candidate>& candidates, size_t chosen) {
  const auto isChosen = [&](const Candidate& one) { return one.module == chosen; };
  const Candidate& choice = *std::find_if(candidates.begin(), candidates.end(), isChosen);
  std::vector<std::string> reasons;
  if (choice.carried) {
    reasons.push_back("carries " + FormatCarried(*choice.carried));
  }
  if (candidates.size() == 1) {
    reasons.emplace_back("the only candidate");
    return JoinTexts(reasons, ", ");
  }
  const std::string& version = set.VersionOf(choice);
  bool isOwnIdRare = false;
  bool isPlatformRare = false;
  bool isLanguageRare = false;
  bool isHighest = true;
  size_t sameVersion = 0;
  size_t ofLanguage = 0;
  size_t equal = 0;
  for (const Candidate& one : candidates) {
    isOwnIdRare = isOwnIdRare || (one.carried && !choice.carried);
    if ((one.carried == nullptr) != (choice.carried == nullptr)) {
      continue;
    }
    isPlatformRare = isPlatformRare || one.platform > choice.platform;
    if (one.platform != choice.platform) {
      continue;
    }
    isLanguageRare = isLanguageRare || one.language > choice.language;
    if (one.language != choice.language) {
      continue;
    }
    ++ofLanguage;
    const int order = CompareVersionTexts(version, set.VersionOf(one));
    isHighest = isHighest && order >= 0;
    sameVersion += order == 0 ? 1 : 0;
    equal += order == 0 && one.module >= chosen ? 1 : 0;
  }
  if (isOwnIdRare && ofLanguage == 1) {
    reasons.emplace_back("a module of its own");
  }
  if (isPlatformRare) {
    reasons.push_back("for " + set.Modules()[chosen].platform);
  }
  if (isLanguageRare) {
    const long language =
        choice.carried ? choice.carried->language.value_or(0) : set.Modules()[chosen].language;
    reasons.emplace_back(choice.language == LanguageMatch::Exact && language != 0
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
