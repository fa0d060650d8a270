#include "merge/PossibleModule.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace qm::merge {

namespace {

constexpr size_t kMaxLanguages = 16;
constexpr long kMaxPart = 65535;

using Version = std::array<long, 4>;

std::string FormatVersion(const Version& version) {
  std::string text;
  for (const long part : version) {
    text += (text.empty() ? "" : ".") + std::to_string(part);
  }
  return text;
}

/// Returns the lowest version above all that begin with the first `count` parts of `version`.
std::optional<Version> Increment(Version version, size_t count) {
  for (; count > 0; --count) {
    if (version[count - 1] < kMaxPart) {
      ++version[count - 1];
      std::fill(version.begin() + static_cast<std::ptrdiff_t>(count), version.end(), 0);
      return version;
    }
  }
  return std::nullopt;
}

long ParsePart(std::string_view digits) {
  long part = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') {
      break;
    }
    part = std::min(10 * part + (digit - '0'), kMaxPart + 1);
  }
  return part;
}

/// Returns the first parts of a version text, or the lowest version above it if one of them is too
/// large.
std::optional<Version> ParseVersion(std::string_view text) {
  Version version{};
  for (size_t at = 0; at < version.size() && !text.empty(); ++at) {
    const size_t end = std::min(text.find('.'), text.size());
    version[at] = ParsePart(text.substr(0, end));
    if (version[at] > kMaxPart) {
      return Increment(version, at);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return version;
}

std::optional<Version> FindLowestFrom(const std::string& bound) {
  const std::optional<Version> version = ParseVersion(bound);
  return version && CompareVersionTexts(FormatVersion(*version), bound) < 0
             ? Increment(*version, version->size())
             : version;
}

std::optional<Version> FindLowestAbove(const std::string& bound) {
  const std::optional<Version> version = ParseVersion(bound);
  return version && CompareVersionTexts(FormatVersion(*version), bound) <= 0
             ? Increment(*version, version->size())
             : version;
}

/// Returns the languages to try, those of the requirements first.
std::vector<long> ListLanguages(const std::vector<const Requirement*>& requirements,
                                const std::vector<const Exclusion*>& exclusions) {
  std::vector<long> languages;
  const auto add = [&](long language) {
    if (languages.size() == kMaxLanguages) {
      return;
    }
    const bool isPossible = std::all_of(
        requirements.begin(), requirements.end(),
        [&](const Requirement* one) { return MatchesLanguage(one->language, language); });
    if (isPossible && std::find(languages.begin(), languages.end(), language) == languages.end()) {
      languages.push_back(language);
    }
  };
  for (const Requirement* const requirement : requirements) {
    add(requirement->language.value_or(0));
  }
  add(0);
  for (const Exclusion* const exclusion : exclusions) {
    const long language = exclusion->language.value_or(0);
    add(language < 0 ? -language : language);
  }
  return languages;
}

/// Returns the lowest version from `version` on that no exclusion excludes in a language. The
/// exclusions are in the order of their lowest versions.
std::optional<Version> SkipExcluded(std::optional<Version> version, long language,
                                    const std::vector<const Exclusion*>& exclusions) {
  for (const Exclusion* const exclusion : exclusions) {
    if (!version) {
      break;
    }
    const std::string text = FormatVersion(*version);
    if (!ExcludesLanguage(*exclusion, language) || !ExcludesVersion(*exclusion, text)) {
      continue;
    }
    version = exclusion->maxVersion.empty() ? std::nullopt : FindLowestAbove(exclusion->maxVersion);
  }
  return version;
}

}  // namespace

std::optional<ModuleSignature> FindPossibleModule(
    const std::vector<const Requirement*>& requirements, std::vector<const Exclusion*> exclusions) {
  std::sort(exclusions.begin(), exclusions.end(), [](const Exclusion* a, const Exclusion* b) {
    return CompareVersionTexts(a->minVersion, b->minVersion) < 0;
  });
  const Requirement& highest = **std::max_element(
      requirements.begin(), requirements.end(), [](const Requirement* a, const Requirement* b) {
        return CompareVersionTexts(a->version, b->version) < 0;
      });
  const std::optional<Version> lowest = FindLowestFrom(highest.version);
  for (const long language : ListLanguages(requirements, exclusions)) {
    if (const auto version = SkipExcluded(lowest, language, exclusions)) {
      return ModuleSignature{highest.moduleId, language, FormatVersion(*version)};
    }
  }
  return std::nullopt;
}

}  // namespace qm::merge
