#include "merge/Findings.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "merge/JoinTexts.h"
#include "merge/TargetFolders.h"
#include "text/Fold.h"

namespace qm::merge {

namespace {

std::string Quote(const std::string& text) { return '"' + text + '"'; }

std::string FormatExcludedVersions(const Exclusion& exclusion) {
  if (exclusion.minVersion.empty() && exclusion.maxVersion.empty()) {
    return "every version";
  }
  return exclusion.maxVersion.empty() ? "versions from " + exclusion.minVersion
         : exclusion.minVersion.empty()
             ? "versions up to " + exclusion.maxVersion
             : "versions from " + exclusion.minVersion + " to " + exclusion.maxVersion;
}

class ModuleCheck {
 public:
  ModuleCheck(const ModuleIndex& set, const std::vector<size_t>& scope)
      : m_set(set), m_scope(scope), m_isInScope(set.Modules().size()) {
    for (const size_t position : scope) {
      m_isInScope[position] = true;
    }
  }

  std::vector<Finding> Run(const ResolveDirectory& resolveDirectory) {
    FindUnreadable();
    FindChanged();
    FindMissing();
    FindExclusions();
    FindDuplicates();
    FindNeededDownloads();
    FindFileConflicts(resolveDirectory);
    SortFindings(m_findings);
    return std::move(m_findings);
  }

 private:
  const Module& At(size_t position) const { return m_set.Modules()[position]; }

  const std::string& NameOf(size_t position) const { return GetNameInSentence(At(position)); }

  /// Returns the beginning of a sentence about a row of a module: "A:1033 needs", or "A:1033
  /// carries B:0, which needs".
  std::string FormatSubject(size_t position, const std::string& carriedFor,
                            const char* verb) const {
    return NameOf(position) + (carriedFor.empty() ? " " : " carries " + carriedFor + ", which ") +
           verb + ' ';
  }

  /// Returns what alternative modules have in common: the ID, or the path of a module without an
  /// ID.
  std::string GetAlternativeIdentity(size_t position) const {
    const std::string& id = At(position).moduleId;
    return id.empty() ? At(position).path : text::FoldCase(id);
  }

  std::vector<std::string> NamesOf(const std::vector<size_t>& positions) const {
    std::vector<std::string> names;
    names.reserve(positions.size());
    for (const size_t position : positions) {
      names.push_back(NameOf(position));
    }
    return names;
  }

  /// Adds a finding. The reference is valid until the next one is added.
  Finding& Add(const char* code, const std::vector<size_t>& modules, std::string text) {
    Finding& finding = m_findings.emplace_back(MakeFinding(code, std::move(text)));
    finding.modules = NamesOf(modules);
    finding.positions = modules;
    return finding;
  }

  void FindUnreadable() {
    for (const size_t position : m_scope) {
      if (!At(position).failure.empty()) {
        Add(kUnreadableModule, {position},
            GetFileInSentence(At(position)) + " cannot be read: " + At(position).failure);
      }
    }
  }

  void FindChanged() {
    for (const size_t position : m_scope) {
      if (!At(position).change.empty()) {
        Add(kChangedModule, {position},
            GetFileInSentence(At(position)) +
                " is not the file that was listed: " + At(position).change);
      }
    }
  }

  void FindMissing() {
    const MergePlan plan = PlanMerge(m_set, m_scope);
    for (const MissingModule& missing : plan.missing) {
      Add(kMissingDependency, {missing.neededBy},
          FormatSubject(missing.neededBy, missing.requirement.carriedFor, "needs") +
              FormatRequirement(missing.requirement) + ": " + missing.reason)
          .required = missing.requirement;
    }
    for (const std::vector<size_t>& cycle : plan.cycles) {
      Add(kDependencyCycle, cycle,
          "each needs the next, and the last the first: " + JoinTexts(NamesOf(cycle), ", "));
    }
  }

  void FindExclusions() {
    for (const size_t position : m_scope) {
      for (const Exclusion& exclusion : At(position).exclusions) {
        for (const size_t other : FindExcludedModules(m_set, position, exclusion)) {
          if (m_isInScope[other]) {
            Add(kExclusion, {position, other},
                FormatSubject(position, exclusion.carriedFor, "excludes") +
                    FormatExcludedVersions(exclusion) + " of " + NameOf(other) +
                    ", which has version " + Quote(At(other).version))
                .versions = {At(other).version};
          }
        }
      }
    }
  }

  void FindDuplicates() {
    std::set<std::string> seen;
    for (const size_t position : m_scope) {
      const std::string& id = At(position).moduleId;
      if (id.empty() || !seen.insert(text::FoldCase(id)).second) {
        continue;
      }
      std::map<std::string, std::vector<size_t>> byKey;
      std::vector<size_t> all;
      for (const size_t same : m_set.FindById(id)) {
        if (m_isInScope[same]) {
          byKey[text::FoldCase(At(same).key)].push_back(same);
          all.push_back(same);
        }
      }
      for (const auto& [key, modules] : byKey) {
        AddDuplicate(modules);
      }
      AddVersions(id, all);
    }
  }

  void AddDuplicate(const std::vector<size_t>& modules) {
    if (modules.size() < 2) {
      return;
    }
    std::vector<std::string> places;
    std::vector<FindingValue> values;
    places.reserve(modules.size());
    for (const size_t position : modules) {
      places.push_back(At(position).path + " (version " + At(position).version + ')');
      values.push_back({position, "Version", At(position).version});
    }
    Add(kDuplicateModuleKey, {modules.front()},
        NameOf(modules.front()) + " is in the set " + std::to_string(modules.size()) +
            " times: " + JoinTexts(places, ", "))
        .values = std::move(values);
  }

  void AddVersions(const std::string& id, const std::vector<size_t>& modules) {
    std::vector<std::string> versions;
    versions.reserve(modules.size());
    for (const size_t position : modules) {
      versions.push_back(At(position).version);
    }
    const auto isLower = [](const auto& a, const auto& b) { return CompareVersionTexts(a, b) < 0; };
    const auto isSame = [](const auto& a, const auto& b) { return CompareVersionTexts(a, b) == 0; };
    std::stable_sort(versions.begin(), versions.end(), isLower);
    versions.erase(std::unique(versions.begin(), versions.end(), isSame), versions.end());
    if (versions.size() > 1) {
      Finding& finding = Add(kSeveralVersions, modules,
                             id + " is in the set in " + std::to_string(versions.size()) +
                                 " versions: " + JoinTexts(versions, ", "));
      finding.versions = std::move(versions);
    }
  }

  void FindNeededDownloads() {
    for (const size_t position : m_scope) {
      if (At(position).needsDownload) {
        Add(kNeedsDownload, {position}, NameOf(position) + " has to be downloaded, or files of it");
      }
    }
  }

  /// Finds files of the same name that modules of different IDs deliver to the same directory.
  /// Modules of the same ID are alternatives, which do not conflict. Directories are resolved only
  /// for names that modules of different IDs deliver.
  void FindFileConflicts(const ResolveDirectory& resolveDirectory) {
    struct Delivery {
      size_t module;
      const DeliveredFile* file;
    };
    std::map<std::string, std::vector<Delivery>> byName;
    for (const size_t position : m_scope) {
      for (const DeliveredFile& file : At(position).files) {
        if (!file.name.empty()) {
          byName[text::FoldCase(file.name)].push_back({position, &file});
        }
      }
    }
    for (const auto& [name, deliveries] : byName) {
      const std::string firstIdentity = GetAlternativeIdentity(deliveries.front().module);
      if (std::all_of(deliveries.begin(), deliveries.end(), [&](const Delivery& delivery) {
            return GetAlternativeIdentity(delivery.module) == firstIdentity;
          })) {
        continue;
      }
      std::map<std::string, std::vector<size_t>> byFolder;
      std::map<std::string, std::string> folders;
      for (const Delivery& delivery : deliveries) {
        const std::string folder = resolveDirectory(delivery.module, delivery.file->directory);
        byFolder[text::FoldCase(folder)].push_back(delivery.module);
        folders.emplace(text::FoldCase(folder), folder);
      }
      for (const auto& [folder, modules] : byFolder) {
        AddFileConflict(std::string(deliveries.front().file->name), folders[folder], modules);
      }
    }
  }

  void AddFileConflict(const std::string& file, const std::string& folder,
                       const std::vector<size_t>& deliverers) {
    std::vector<size_t> modules;
    std::set<std::string> ids;
    for (const size_t position : deliverers) {
      if (ids.insert(GetAlternativeIdentity(position)).second) {
        modules.push_back(position);
      }
    }
    if (!folder.empty() && modules.size() > 1) {
      Finding& finding =
          Add(kFileConflict, modules,
              file + " goes to " + folder + " from " + JoinTexts(NamesOf(modules), " and from "));
      finding.file = file;
      finding.folder = folder;
    }
  }

  const ModuleIndex& m_set;
  const std::vector<size_t>& m_scope;
  std::vector<bool> m_isInScope;
  std::vector<Finding> m_findings;
};

}  // namespace

Finding MakeFinding(const char* code, std::string text) {
  const FindingCode& entry = GetFindingCode(code);
  Finding finding;
  finding.code = code;
  finding.severity = entry.severity;
  finding.mergeError = entry.mergeError;
  finding.text = std::move(text);
  return finding;
}

std::vector<size_t> FindExcludedModules(const ModuleIndex& set, size_t excluding,
                                        const Exclusion& exclusion) {
  std::vector<size_t> excluded;
  if (exclusion.moduleId.empty()) {
    return excluded;
  }
  for (const size_t position : set.FindById(exclusion.moduleId)) {
    const Module& module = set.Modules()[position];
    if (position != excluding &&
        Excludes(exclusion, module.moduleId, module.language, module.version)) {
      excluded.push_back(position);
    }
  }
  return excluded;
}

std::vector<Finding> CheckModules(const ModuleIndex& set, const std::vector<size_t>& scope,
                                  const ResolveDirectory& resolveDirectory) {
  if (resolveDirectory) {
    return ModuleCheck(set, scope).Run(resolveDirectory);
  }
  std::map<size_t, TargetFolders> folders;
  return ModuleCheck(set, scope).Run([&](size_t module, std::string_view directory) {
    const TargetFolder folder =
        folders.try_emplace(module, set.Modules()[module]).first->second.Resolve(directory);
    return folder.end == FolderEnd::Root ? FormatTargetFolder(folder) : std::string();
  });
}

std::vector<Finding> CheckIndexes(const ModuleIndex& set, const std::vector<IndexEntry>& entries) {
  std::map<std::pair<std::string, std::string>, std::vector<const IndexEntry*>> unknown;
  for (const IndexEntry& entry : entries) {
    if (set.FindByKey(entry.moduleKey).empty()) {
      unknown[{entry.table, entry.moduleKey}].push_back(&entry);
    }
  }
  std::vector<Finding> findings;
  for (const auto& [place, lines] : unknown) {
    const std::string more =
        lines.size() == 1 ? "" : " and " + std::to_string(lines.size() - 1) + " more";
    Finding& finding = findings.emplace_back(MakeFinding(
        kUnknownModule, place.first + " names " + place.second + " for " +
                            Quote(lines.front()->name) + more + ", and the set does not have it"));
    finding.modules = {place.second};
  }
  return findings;
}

void SortFindings(std::vector<Finding>& findings) {
  std::sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.code, a.modules, a.text) < std::tie(b.code, b.modules, b.text);
  });
}

}  // namespace qm::merge
