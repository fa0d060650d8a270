#pragma once

#include <optional>
#include <string>

// The rules by which the installer's documentation relates merge modules to one another, on plain
// values in UTF-8.

/// Orders version texts ("1.20.3") by their parts as numbers of any size: less than, equal to or
/// greater than 0. A part that is missing, or does not begin with a digit, counts as 0; what
/// follows the digits of a part does not count.
///
/// For whether a version satisfies a requirement or an exclusion, where "65536.0" is high. The
/// gallery's CompareVersions, for whether an offered version is newer, differs: it cuts each part
/// to 16 bits, ignores parts behind the fourth, and reads a sign.
int CompareVersionTexts(const std::string& a, const std::string& b);

/// Whether a module of `language` is one of `wanted`: of every language for 0, of all languages of
/// a group for the identifier of a primary language (9 for 1033 and 2057), otherwise of exactly
/// this one. The tables' null stands for every language.
bool LanguageFits(std::optional<long> wanted, long language);

/// A module that another one needs: a row of its ModuleDependency table.
struct Requirement {
  std::string moduleId;
  std::optional<long> language;
  std::string version;  ///< the lowest that will do; empty when every version will
};

/// A requirement for people: "ID:language, at least version".
std::string RequirementText(const Requirement& requirement);

/// Whether a module satisfies a requirement. The ID's case makes no difference.
bool Satisfies(const Requirement& requirement, const std::string& moduleId, long language,
               const std::string& version);

/// Modules with which another one cannot be merged: a row of its ModuleExclusion table.
struct Exclusion {
  std::string moduleId;
  /// 0 or none for every language, negative for every language but this one.
  std::optional<long> language;
  std::string minVersion;  ///< the lowest that is excluded; empty for no lower bound
  std::string maxVersion;  ///< the highest that is excluded; empty for no upper bound
};

/// Whether a module is excluded. The ID's case makes no difference.
bool Excludes(const Exclusion& exclusion, const std::string& moduleId, long language,
              const std::string& version);
