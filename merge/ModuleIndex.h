#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "merge/Module.h"

namespace qm::merge {

/// The choice of a module for a requirement, and the reason for it.
struct Choice {
  std::optional<size_t> module;  ///< position; std::nullopt if no module satisfies it
  std::string reason;            ///< "the highest version of 3", "no module has this ID", ...
};

/// How well the platform of a module fits the module that needs it.
enum class PlatformMatch : std::uint8_t {
  Same,   ///< or unknown for one of them
  Other,  ///< a 32-bit module for a 64-bit one: they can be merged into one package
  Wrong,  ///< a 64-bit module for one of another platform
};

/// How near the language of a module is to the language that is wanted.
enum class LanguageMatch : std::uint8_t {
  Exact,
  Covering,  ///< one of the two is a primary language and means the other
  Neutral,
  Other,
};

/// Returns the platform of a module, case-folded and with one spelling of each; empty if it is
/// unknown. A module whose template has no platform is for Intel.
std::string GetPlatform(const Module& module);

/// A module that satisfies a requirement, itself or because of a module that was merged into it.
struct Candidate {
  size_t module;
  PlatformMatch platform;
  LanguageMatch language;                    ///< of the module that has the required ID
  const ModuleSignature* carried = nullptr;  ///< what satisfies it; null for the module itself
};

/// A module that an exclusion excludes.
struct ExcludedModule {
  size_t module;
  const ModuleSignature* carried;  ///< what is excluded; null for the module itself
};

/// The rank of a module among those of its ID, by version.
struct VersionRank {
  size_t higherVersions;  ///< number of distinct higher versions
  size_t modulesBefore;   ///< number with a higher version, or the same and earlier in the set
};

/// An index of modules by ID, which finds the module for a requirement. Positions are those in the
/// list passed to the constructor. The list must outlive the object. Immutable.
class ModuleIndex {
 public:
  explicit ModuleIndex(const std::vector<Module>& modules);

  const std::vector<Module>& Modules() const noexcept { return m_modules; }

  /// Returns the positions of all modules with an ID, in ascending order. Ignores the case of the
  /// ID.
  const std::vector<size_t>& FindById(const std::string& moduleId) const;

  /// Returns the positions of the modules that a key names, in ascending order, by the rules of the
  /// catalog's FindModule: "ID" and "ID:" mean every language, "ID:1033" the one language whose
  /// decimal text this is. The first colon separates the two. Ignores the case of the ID.
  ///
  /// Also finds modules whose ID contains colons, by the whole ID or by their own key, in which the
  /// last colon separates ID and language.
  std::vector<size_t> FindByKey(const std::string& key) const;

  /// Returns the modules that satisfy a requirement of `user`, best first: by platform, language,
  /// highest version and order. The wanted language is that of `user`, or that of the requirement
  /// if the two do not match. Modules of the required ID that are for a wrong platform are returned
  /// only if no others of the ID satisfy it. No module, not even one without an ID, satisfies a
  /// requirement without an ID.
  ///
  /// Modules that carry a required one satisfy the requirement too. They follow all modules that
  /// have the required ID themselves, in the same order, each once with the best that it carries.
  std::vector<Candidate> FindCandidates(const Requirement& requirement, const Module& user) const {
    return FindCandidates(requirement, user, user.language);
  }

  /// The same as if `user` had another language.
  std::vector<Candidate> FindCandidates(const Requirement& requirement, const Module& user,
                                        long userLanguage) const;

  /// Returns the modules that an exclusion of the module at `excluding` excludes, except that
  /// module itself: those that have the excluded ID, then those that carry an excluded module, each
  /// once. An exclusion without an ID excludes no module.
  std::vector<ExcludedModule> FindExcluded(size_t excluding, const Exclusion& exclusion) const;

  /// Returns those of some modules that are for a 64-bit platform, by platform: a package is for
  /// one.
  std::map<std::string, std::vector<size_t>> GroupBy64BitPlatform(
      const std::vector<size_t>& positions) const;

  /// Chooses the best of these modules, regardless of what else is merged.
  Choice Choose(const Requirement& requirement, const Module& user) const;

  VersionRank RankOf(size_t position) const noexcept { return m_ranks[position]; }

  /// Returns why no module satisfies a requirement that has no candidates.
  std::string ExplainMissing(const Requirement& requirement) const;

  /// Returns how sentences name a candidate: "A:1033", or "A:1033, which carries B:1033 2.0,".
  std::string NameOf(const Candidate& candidate) const;

  /// Returns the version with which a candidate satisfies a requirement.
  const std::string& VersionOf(const Candidate& candidate) const noexcept {
    return candidate.carried ? candidate.carried->version : m_modules[candidate.module].version;
  }

 private:
  /// The most languages of one ID that are read of what a module carries.
  static constexpr size_t kMaxCarriedLanguages = 64;

  /// What a module carries of an ID in a language.
  struct Carrier {
    size_t module;
    long language;
    std::vector<const ModuleSignature*> byVersion;  ///< the highest first; never empty

    const ModuleSignature& Highest() const noexcept { return *byVersion.front(); }
  };

  struct SameId {
    std::vector<size_t> inOrder;
    std::vector<size_t> byVersion;  ///< the highest first; empty for a single module
    std::vector<Carrier> carriers;  ///< by their highest versions, the highest first

    const std::vector<size_t>& ByVersion() const noexcept {
      return byVersion.empty() ? inOrder : byVersion;
    }
  };

  void AddCarried(size_t position);
  void RankVersions(SameId& same);
  const SameId* Find(const std::string& moduleId) const;
  void AddByIdAndLanguage(const std::string& moduleId, const std::string& language,
                          std::vector<size_t>& positions) const;

  const std::vector<Module>& m_modules;
  std::map<std::string, SameId> m_byId;
  std::vector<VersionRank> m_ranks;      ///< by position
  std::vector<std::string> m_platforms;  ///< by position
};

/// Returns how sentences name a carried module: "B:1033 2.0".
std::string FormatCarried(const ModuleSignature& carried);

/// Returns why the module at `chosen` was chosen from the candidates of a requirement: "the highest
/// version of 3, at least 1.9".
std::string ExplainChoice(const ModuleIndex& set, const Requirement& requirement,
                          const std::vector<Candidate>& candidates, size_t chosen);

}  // namespace qm::merge
