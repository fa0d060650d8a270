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

enum class Platform { X86, X64, Itanium, Arm64, Unknown };

/// Returns the platform of a module, from the text of its template. A template without one is for
/// x86.
Platform GetPlatform(const Module& module) {
  static const std::unordered_map<std::string_view, Platform> platforms = {
      {"", Platform::X86},      {"intel", Platform::X86},       {"x64", Platform::X64},
      {"amd64", Platform::X64}, {"intel64", Platform::Itanium}, {"arm64", Platform::Arm64},
  };
  const auto found = platforms.find(text::FoldCase(module.platform));
  return !module.tables || found == platforms.end() ? Platform::Unknown : found->second;
}

/// How two modules fit into one package. One that needs a 64-bit module is merged into a 64-bit
/// package, which also takes 32-bit modules.
enum class PlatformFit { Fits, IsUnusual, Fails };

PlatformFit CompareWith(const Module& module, const Module& needed) {
  const Platform own = GetPlatform(module);
  const Platform other = GetPlatform(needed);
  if (own == other || own == Platform::Unknown || other == Platform::Unknown) {
    return PlatformFit::Fits;
  }
  return other == Platform::X86 ? PlatformFit::IsUnusual : PlatformFit::Fails;
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
  void Check(size_t position, const Requirement& requirement) {
    const Choice& choice = Choose(requirement);
    if (choice.module) {
      m_needed[position].push_back(*choice.module);
      CheckPlatform(position, requirement, *choice.module);
    } else if (m_findings.Admit(kMissingDependency)) {
      m_findings
          .Add(kMissingDependency, {position},
               FormatSubject(m_findings.NameOf(position), requirement.carriedFrom, "needs") +
                   FormatRequirement(requirement) + ": " + choice.reason)
          .required = requirement;
    }
  }

  /// Returns the module for a requirement, which in a merge is one that is merged.
  const Choice& Choose(const Requirement& requirement) {
    std::string key = text::FoldCase(requirement.moduleId);
    key += '\0' + std::to_string(requirement.language.value_or(0)) + '\0' + requirement.version;
    const auto [found, isNew] = m_choices.try_emplace(std::move(key));
    Choice& choice = found->second;
    if (isNew) {
      choice = m_modules.Set().Choose(requirement);
      if (m_modules.IsMerge() && choice.module && !m_modules.IsInScope(*choice.module)) {
        LimitToMerge(requirement, choice);
      }
    }
    return choice;
  }

  void LimitToMerge(const Requirement& requirement, Choice& choice) const {
    for (const size_t position : m_modules.Set().FindById(requirement.moduleId)) {
      const Module& module = m_modules.At(position);
      if (m_modules.IsInScope(position) &&
          Satisfies(requirement, module.moduleId, module.language, module.version)) {
        choice.module = position;
        return;
      }
    }
    choice.reason = m_findings.NameOf(*choice.module) + " would do, but is not merged";
    choice.module.reset();
  }

  void CheckPlatform(size_t position, const Requirement& requirement, size_t chosen) {
    const PlatformFit fit = CompareWith(m_modules.At(position), m_modules.At(chosen));
    if (fit == PlatformFit::Fits || HasFittingAlternative(position, requirement) ||
        !m_findings.Admit(kPlatformConflict)) {
      return;
    }
    const auto nameOf = [&](size_t module) {
      const std::string& platform = m_modules.At(module).platform;
      return platform.empty() ? std::string("Intel") : platform;
    };
    Finding& finding = m_findings.Add(
        kPlatformConflict, {position, chosen},
        FormatSubject(m_findings.NameOf(position), requirement.carriedFrom, "needs") +
            FormatRequirement(requirement) + ", but is for " + nameOf(position) + " while " +
            m_findings.NameOf(chosen) + " is for " + nameOf(chosen));
    finding.required = requirement;
    finding.values = {{position, "Platform", nameOf(position)},
                      {chosen, "Platform", nameOf(chosen)}};
    if (fit == PlatformFit::IsUnusual) {
      LimitSeverity(finding, Severity::Note);
      finding.mergeError = 0;
    }
  }

  bool HasFittingAlternative(size_t position, const Requirement& requirement) const {
    const std::vector<size_t>& sameId = m_modules.Set().FindById(requirement.moduleId);
    return std::any_of(sameId.begin(), sameId.end(), [&](size_t other) {
      const Module& module = m_modules.At(other);
      return (!m_modules.IsMerge() || m_modules.IsInScope(other)) &&
             CompareWith(m_modules.At(position), module) == PlatformFit::Fits &&
             Satisfies(requirement, module.moduleId, module.language, module.version);
    });
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
  std::unordered_map<std::string, Choice> m_choices;
  std::vector<std::vector<size_t>> m_needed;  ///< by position
};

std::string FormatExcludedVersions(const Exclusion& exclusion) {
  if (exclusion.minVersion.empty() && exclusion.maxVersion.empty()) {
    return "every version";
  }
  return exclusion.maxVersion.empty() ? "versions from " + exclusion.minVersion
         : exclusion.minVersion.empty()
             ? "versions up to " + exclusion.maxVersion
             : "versions from " + exclusion.minVersion + " to " + exclusion.maxVersion;
}

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
      for (const size_t other : FindExcludedModules(modules.Set(), position, exclusion)) {
        if (!modules.IsInScope(other) || !findings.Admit(kExclusion)) {
          continue;
        }
        const std::string& version = modules.At(other).version;
        Finding& finding = findings.Add(
            kExclusion, {position, other},
            FormatSubject(findings.NameOf(position), exclusion.carriedFrom, "excludes") +
                FormatExcludedVersions(exclusion) + " of " + findings.NameOf(other) +
                ", which has version " + QuoteShort(version));
        finding.versions = {version};
        if (!modules.IsMerge() && modules.AreAlternatives(position, other)) {
          LimitSeverity(finding, Severity::Note);
        }
      }
    }
  }
}

}  // namespace qm::merge
