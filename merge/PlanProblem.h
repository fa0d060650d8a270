#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "merge/ModuleIndex.h"
#include "merge/PlanCost.h"

namespace qm::merge {

/// The modules among which a plan chooses and their requirements, as numbers. Modules, requirements
/// and IDs are numbered from 0. Equal requirements of modules of one language and platform are one
/// need. Immutable.
class PlanProblem {
 public:
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  /// A module that satisfies a need.
  struct Option {
    std::uint32_t module;
    PlatformMatch platform;  ///< Same for a carrier that is planned for other reasons too
    LanguageMatch language;
    bool isCarrier;  ///< the module carries the one that satisfies the need

    /// Returns what it costs to take the module for this need. What a module carries is part of
    /// every plan with the module, so its platform and language are no choice. A carrier costs
    /// nothing that would outweigh another module, so no module is added to a plan in its place.
    PlanCost Cost() const noexcept {
      PlanCost cost;
      cost[PlanCost::Objections] = platform == PlatformMatch::Wrong ? 1 : 0;
      if (isCarrier) {
        cost[PlanCost::Order] = 1;
        return cost;
      }
      cost[PlanCost::Platforms] = platform == PlatformMatch::Other ? 1 : 0;
      cost[PlanCost::Languages] = static_cast<std::int64_t>(language);
      return cost;
    }
  };

  struct Need {
    std::uint32_t id = 0;
    std::vector<Option> candidates;  ///< best first; carriers last
    bool hasCarriers = false;        ///< whether some satisfy it by what they carry
  };

  struct Node {
    size_t position = 0;
    std::uint32_t id = 0;
    bool isExpanded = false;                  ///< the members below are known
    std::vector<std::uint32_t> rowNeeds;      ///< need of each requirement; kNone if met within
    std::vector<std::uint32_t> needs;         ///< the same, each once, if it has candidates
    std::vector<std::uint32_t> excludedWith;  ///< modules that it excludes or that exclude it
    /// Set if no wanted module leads to it by requirements of its own ID. Such a module can be
    /// planned, but only for what it carries.
    bool isOnlyCarrier = true;
    PlanCost cost;  ///< of the module, regardless of what else is planned
  };

  enum class Extent {
    Plan,       ///< what a plan for all wanted modules can contain
    AnySubset,  ///< what a plan for some of them can contain
  };

  PlanProblem(const ModuleIndex& set, const std::vector<size_t>& wanted, Extent extent);

  const ModuleIndex& Set() const noexcept { return m_set; }
  const std::vector<Node>& Modules() const noexcept { return m_modules; }
  const std::vector<Need>& Needs() const noexcept { return m_needs; }
  size_t IdCount() const noexcept { return m_idCount; }

  /// Returns the modules that satisfy a requirement of a module of the problem, best first. The
  /// language of a neutral module is that of the wanted modules, if those that have one agree.
  std::vector<Candidate> FindCandidates(const Requirement& requirement, const Module& user) const {
    return m_set.FindCandidates(requirement, user, LanguageOf(user));
  }

  /// Returns the number of a module; kNone if no plan contains it.
  std::uint32_t FindModule(size_t position) const noexcept { return m_numbers[position]; }

  /// Returns whether any need can be met in several ways. If not, `Forced` is the plan.
  bool HasChoice() const noexcept { return m_hasChoice; }
  const std::vector<std::uint32_t>& Forced() const noexcept { return m_forced; }

 private:
  struct NeedKey {
    std::uint32_t id;
    std::uint32_t version;
    std::uint32_t platform;
    long language;
    long userLanguage;
    bool anyLanguage;
    bool hasTables;

    bool operator==(const NeedKey& other) const noexcept;
  };
  struct HashNeedKey {
    size_t operator()(const NeedKey& key) const noexcept;
  };

  long LanguageOf(const Module& user) const noexcept {
    return user.language == 0 ? m_wantedLanguage : user.language;
  }

  std::uint32_t AddModule(size_t position);
  std::uint32_t AddNeed(const Module& user, const Requirement& requirement);
  std::uint32_t FindId(const std::string& moduleId);
  std::uint32_t FindPlatform(const std::string& platform);
  void Expand(std::uint32_t number);
  void ExpandForced();
  void ExpandAll();
  void FindOnlyCarriers(const std::vector<size_t>& wanted);
  void AddExclusions();
  void AddCosts();

  const ModuleIndex& m_set;
  const long m_wantedLanguage;           ///< 0 if the wanted modules have none or several
  std::vector<std::uint32_t> m_numbers;  ///< by position
  std::vector<Node> m_modules;
  std::vector<Need> m_needs;
  std::vector<std::uint32_t> m_forced;
  bool m_hasChoice = false;
  std::uint32_t m_idCount = 0;
  std::unordered_map<std::string_view, std::uint32_t> m_idsAsWritten;
  std::map<std::string, std::uint32_t> m_ids;
  std::unordered_map<std::string_view, std::uint32_t> m_versions;
  std::map<std::string, std::uint32_t> m_platforms;
  std::unordered_map<NeedKey, std::uint32_t, HashNeedKey> m_needNumbers;
  std::vector<std::uint32_t> m_lastUser;  ///< by need: the last module whose `needs` list it
};

}  // namespace qm::merge
