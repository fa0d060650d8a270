#pragma once

#include <optional>
#include <string>

namespace qm::merge {

// The rules of the installer for dependencies and exclusions of merge modules. All texts are UTF-8.

/// Compares version texts ("1.20.3") part by part, as numbers of any size. Returns a value less
/// than, equal to or greater than 0. A part that is missing or does not begin with a digit is 0.
/// What follows the digits of a part is ignored.
///
/// Used to decide whether a version satisfies a requirement or an exclusion; "65536.0" is a high
/// version. The gallery's CompareVersions, which decides whether an offered version is newer,
/// differs: it truncates each part to 16 bits, ignores parts after the fourth, and reads a sign.
int CompareVersionTexts(const std::string& a, const std::string& b);

/// Returns whether `language` is one of `wanted`. std::nullopt, the tables' null, and 0 mean every
/// language. The identifier of a primary language means all of its languages (9 means 1033 and
/// 2057). Any other identifier means itself.
bool MatchesLanguage(std::optional<long> wanted, long language);

/// A module that another one needs: a row of its ModuleDependency table.
struct Requirement {
  std::string moduleId;
  std::optional<long> language;
  std::string version;  ///< lowest acceptable one; empty if any is
  /// The key of the carried module that needs it. Merging copied its row, so the requirement is
  /// still in force. Empty for the module's own rows.
  std::string carriedFrom = {};
};

/// Returns a requirement as text: "ID:language, at least version".
std::string FormatRequirement(const Requirement& requirement);

/// Returns whether a module satisfies a requirement. Ignores the case of the ID.
bool Satisfies(const Requirement& requirement, const std::string& moduleId, long language,
               const std::string& version);

/// Modules that cannot be merged with another one: a row of its ModuleExclusion table.
struct Exclusion {
  std::string moduleId;
  /// std::nullopt or 0 for every language; negative for every language that its absolute value does
  /// not mean.
  std::optional<long> language;
  std::string minVersion;  ///< lowest excluded one; empty for no lower bound
  std::string maxVersion;  ///< highest excluded one; empty for no upper bound
  /// The key of the carried module that excludes them, as in Requirement.
  std::string carriedFrom = {};
};

/// Returns the versions that an exclusion excludes as text: "every version", "versions from 1.0".
std::string FormatExcludedVersions(const Exclusion& exclusion);

/// Returns whether an exclusion concerns a language, or a version.
bool ExcludesLanguage(const Exclusion& exclusion, long language);
bool ExcludesVersion(const Exclusion& exclusion, const std::string& version);

/// Returns whether an exclusion excludes a module. Ignores the case of the ID.
bool Excludes(const Exclusion& exclusion, const std::string& moduleId, long language,
              const std::string& version);

}  // namespace qm::merge
