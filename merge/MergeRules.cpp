#include "merge/MergeRules.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "text/Fold.h"

namespace qm::merge {

namespace {

/// Removes the first part of a version and returns its digits without leading zeros.
std::string_view ConsumeVersionPart(std::string_view& version) {
  const size_t end = std::min(version.find('.'), version.size());
  std::string_view part = version.substr(0, end);
  version.remove_prefix(std::min(end + 1, version.size()));
  part = part.substr(0, part.find_first_not_of("0123456789"));
  part.remove_prefix(std::min(part.find_first_not_of('0'), part.size()));
  return part;
}

int CompareNumbers(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) {
    return a.size() < b.size() ? -1 : 1;
  }
  if (a == b) {
    return 0;
  }
  return a < b ? -1 : 1;
}

// The low 10 bits of a language identifier are the primary language, the bits above them its
// variety.
constexpr long kEveryLanguage = 0;

unsigned PrimaryLanguage(long language) { return static_cast<std::uint16_t>(language) & 0x3FFU; }

bool HasSublanguage(long language) { return static_cast<std::uint16_t>(language) >> 10U != 0; }

/// Compares ASCII without copies, because this runs for each row of a set.
bool IsSameId(const std::string& a, const std::string& b) {
  const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  for (size_t at = 0; at < std::min(a.size(), b.size()); ++at) {
    if (((static_cast<unsigned char>(a[at]) | static_cast<unsigned char>(b[at])) & 0x80U) != 0) {
      return text::FoldCase(a) == text::FoldCase(b);
    }
    if (fold(a[at]) != fold(b[at])) {
      return false;
    }
  }
  return a.size() == b.size();
}

bool IsAtLeast(const std::string& version, const std::string& bound) {
  return bound.empty() || CompareVersionTexts(version, bound) >= 0;
}

bool IsAtMost(const std::string& version, const std::string& bound) {
  return bound.empty() || CompareVersionTexts(version, bound) <= 0;
}

}  // namespace

int CompareVersionTexts(const std::string& a, const std::string& b) {
  std::string_view restOfA = a;
  std::string_view restOfB = b;
  while (!restOfA.empty() || !restOfB.empty()) {
    const std::string_view partOfA = ConsumeVersionPart(restOfA);
    const std::string_view partOfB = ConsumeVersionPart(restOfB);
    if (const int order = CompareNumbers(partOfA, partOfB)) {
      return order;
    }
  }
  return 0;
}

bool MatchesLanguage(std::optional<long> wanted, long language) {
  if (!wanted || *wanted == kEveryLanguage || *wanted == language) {
    return true;
  }
  return !HasSublanguage(*wanted) && PrimaryLanguage(*wanted) == PrimaryLanguage(language);
}

std::string FormatRequirement(const Requirement& requirement) {
  std::string text = requirement.moduleId;
  if (requirement.language.value_or(kEveryLanguage) != kEveryLanguage) {
    text += ':' + std::to_string(*requirement.language);
  }
  return requirement.version.empty() ? text : text + ", at least " + requirement.version;
}

bool Satisfies(const Requirement& requirement, const std::string& moduleId, long language,
               const std::string& version) {
  return IsSameId(requirement.moduleId, moduleId) &&
         MatchesLanguage(requirement.language, language) && IsAtLeast(version, requirement.version);
}

bool ExcludesLanguage(const Exclusion& exclusion, long language) {
  const long wanted = exclusion.language.value_or(kEveryLanguage);
  return wanted < 0 ? !MatchesLanguage(-wanted, language) : MatchesLanguage(wanted, language);
}

bool ExcludesVersion(const Exclusion& exclusion, const std::string& version) {
  return IsAtLeast(version, exclusion.minVersion) && IsAtMost(version, exclusion.maxVersion);
}

bool Excludes(const Exclusion& exclusion, const std::string& moduleId, long language,
              const std::string& version) {
  return ExcludesLanguage(exclusion, language) && IsSameId(exclusion.moduleId, moduleId) &&
         ExcludesVersion(exclusion, version);
}

std::string FormatExcludedVersions(const Exclusion& exclusion) {
  if (exclusion.minVersion.empty() && exclusion.maxVersion.empty()) {
    return "every version";
  }
  return exclusion.maxVersion.empty() ? "versions from " + exclusion.minVersion
         : exclusion.minVersion.empty()
             ? "versions up to " + exclusion.maxVersion
             : "versions from " + exclusion.minVersion + " to " + exclusion.maxVersion;
}

}  // namespace qm::merge
