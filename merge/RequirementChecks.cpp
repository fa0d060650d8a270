#include <algorithm>
#include <set>
#include <unordered_map>

#include "merge/Checks.h"
#include "merge/Hashing.h"
#include "merge/JoinTexts.h"

namespace qm::merge {

namespace {

/// Returns the beginning of a sentence about a row of a module: "A:1033 needs", or "A:1033 carries
/// B:0, which needs".
std::string FormatSubject(const std::string& module, const std::string& carriedFrom,
                          const char* verb) {
  return module + (carriedFrom.empty() ? " " : " carries " + carriedFrom + ", which ") + verb + ' ';
}

/// Returns the end of a sentence about an excluded module, before its version.
std::string FormatExcluded(const ExcludedModule& excluded, const std::string& name) {
  return excluded.carried
             ? MakeModuleKey(excluded.carried->moduleId, excluded.carried->language.value_or(0)) +
                   ", which " + name + " carries in version "
             : name + ", which has version ";
}

class RequirementCheck {
 public:
  RequirementCheck(const CheckedModules& modules, FindingList& findings)
      : m_modules(modules), m_findings(findings), m_needed(modules.Set().Modules().size()) {}

  void Run() {
    for (const size_t position : m_modules.Scope()) {
      for (const Requirement& requirement : m_modules.At(position).requirements) {
        if (!IsMetWithin(m_modules.At(position), requirement)) {
          Check(position, requirement);
        }
      }
    }
    FindCycles();
  }

 private:
  /// The module that satisfies a requirement, or the reason why no module does.
  struct Found {
    std::optional<Candidate> best;
    std::string reason = {};
  };

  void Check(size_t position, const Requirement& requirement) {
    const Found& found = Find(requirement, m_modules.At(position));
    if (found.best) {
      m_needed[position].push_back(found.best->module);
      // A carrier is in the product anyway, and what it carries with it.
      if (!found.best->carried && found.best->platform != PlatformMatch::Same &&
          m_findings.Admit(kPlatformConflict)) {
        AddPlatformConflict(position, requirement, *found.best);
      }
    } else if (m_findings.Admit(kMissingDependency)) {
      m_findings
          .Add(kMissingDependency, {position},
               FormatSubject(m_findings.NameOf(position), requirement.carriedFrom, "needs") +
                   FormatRequirement(requirement) + ": " + found.reason)
          .required = requirement;
    }
  }

  /// Returns the best module for a requirement; in a merge, the best of the merged ones. Many
  /// modules have the same requirement, so each is looked up once.
  const Found& Find(const Requirement& requirement, const Module& user) {
    std::string key = text::FoldCase(requirement.moduleId);
    key.append(1, '\0').append(std::to_string(requirement.language.value_or(0)));
    key.append(1, '\0').append(requirement.version);
    key.append(1, '\0').append(std::to_string(user.language)).append(GetPlatform(user));
    const auto [place, isNew] = m_found.try_emplace(std::move(key));
    if (isNew) {
      place->second = Search(requirement, user);
    }
    return place->second;
  }

  Found Search(const Requirement& requirement, const Module& user) const {
    const std::vector<Candidate> candidates = m_modules.Set().FindCandidates(requirement, user);
    if (candidates.empty()) {
      return {std::nullopt, m_modules.Set().ExplainMissing(requirement)};
    }
    const auto isThere = [&](const Candidate& one) {
      return !m_modules.IsMerge() || m_modules.IsInScope(one.module);
    };
    const auto best = std::find_if(candidates.begin(), candidates.end(), isThere);
    if (best == candidates.end()) {
      return {std::nullopt,
              m_modules.Set().NameOf(candidates.front()) + " would do, but is not merged"};
    }
    return {*best};
  }

  void AddPlatformConflict(size_t position, const Requirement& requirement,
                           const Candidate& found) {
    const size_t chosen = found.module;
    const auto nameOf = [&](size_t module) {
      const std::string& platform = m_modules.At(module).platform;
      return platform.empty() ? std::string("Intel") : platform;
    };
    Finding& finding = m_findings.Add(
        kPlatformConflict, {position, chosen},
        FormatSubject(m_findings.NameOf(position), requirement.carriedFrom, "needs") +
            FormatRequirement(requirement) + ", but is for " + nameOf(position) + " while " +
            m_modules.Set().NameOf(found) + " is for " + nameOf(chosen));
    finding.required = requirement;
    finding.values = {{position, "Platform", nameOf(position)},
                      {chosen, "Platform", nameOf(chosen)}};
    if (found.platform == PlatformMatch::Other) {
      LimitSeverity(finding, Severity::Note);
      finding.mergeError = 0;
    }
  }

  /// Walks the chosen modules depth first, without recursion. A module that leads back to one on
  /// the path closes a cycle.
  void FindCycles() {
    enum class State { New, Open, Done };
    std::vector<State> states(m_needed.size(), State::New);
    std::vector<std::pair<size_t, size_t>> path;  // modules, and how many of their needs are done
    std::set<std::pair<size_t, size_t>> closed;
    for (const size_t start : m_modules.Scope()) {
      if (states[start] == State::New) {
        states[start] = State::Open;
        path.emplace_back(start, 0);
      }
      while (!path.empty()) {
        auto& [module, next] = path.back();
        if (next == m_needed[module].size()) {
          states[module] = State::Done;
          path.pop_back();
          continue;
        }
        const size_t needed = m_needed[module][next++];
        if (states[needed] == State::New) {
          states[needed] = State::Open;
          path.emplace_back(needed, 0);
        } else if (states[needed] == State::Open) {
          if (m_findings.IsFull(kDependencyCycle)) {
            m_findings.EndSearch(kDependencyCycle);
          } else if (closed.emplace(module, needed).second) {
            AddCycle(path, needed);
          }
        }
      }
    }
  }

  void AddCycle(const std::vector<std::pair<size_t, size_t>>& path, size_t first) {
    if (!m_findings.Admit(kDependencyCycle)) {
      return;
    }
    std::vector<size_t> cycle;
    for (auto visit = path.rbegin(); visit != path.rend(); ++visit) {
      cycle.push_back(visit->first);
      if (visit->first == first) {
        break;
      }
    }
    std::reverse(cycle.begin(), cycle.end());
    m_findings.Add(
        kDependencyCycle, cycle,
        "each needs the next, and the last the first: " + m_findings.JoinNames(cycle, ", "));
  }

  const CheckedModules& m_modules;
  FindingList& m_findings;
  std::unordered_map<std::string, Found> m_found;
  std::vector<std::vector<size_t>> m_needed;  ///< by position
};

}  // namespace

void CheckRequirements(const CheckedModules& modules, FindingList& findings) {
  RequirementCheck(modules, findings).Run();
}

void CheckExclusions(const CheckedModules& modules, FindingList& findings) {
  for (const size_t position : modules.Scope()) {
    for (const Exclusion& exclusion : modules.At(position).exclusions) {
      if (findings.IsFull(kExclusion)) {
        findings.EndSearch(kExclusion);
        return;
      }
      for (const ExcludedModule& excluded : modules.Set().FindExcluded(position, exclusion)) {
        const size_t other = excluded.module;
        if (!modules.IsInScope(other) || !findings.Admit(kExclusion)) {
          continue;
        }
        const std::string& version =
            excluded.carried ? excluded.carried->version : modules.At(other).version;
        Finding& finding = findings.Add(
            kExclusion, {position, other},
            FormatSubject(findings.NameOf(position), exclusion.carriedFrom, "excludes") +
                FormatExcludedVersions(exclusion) + " of " +
                FormatExcluded(excluded, findings.NameOf(other)) + QuoteShort(version));
        finding.versions = {version};
        if (!modules.IsMerge() && modules.AreAlternatives(position, other)) {
          LimitSeverity(finding, Severity::Note);
        }
      }
    }
  }
}

}  // namespace qm::merge
