#include <algorithm>
#include <map>
#include <unordered_map>

#include "merge/Checks.h"
#include "merge/CollidingConditions.h"
#include "merge/CollisionSides.h"
#include "merge/Hashing.h"

namespace qm::merge {

namespace {

/// Finds components of modules by their keys.
class ComponentLookup {
 public:
  explicit ComponentLookup(const CheckedModules& modules) : m_modules(modules) {}

  /// Returns a component; null if the module has no row for it.
  const Component* Find(size_t module, std::string_view key) {
    const auto [found, isNew] = m_components.try_emplace(module);
    if (isNew) {
      for (const Component& component : m_modules.At(module).components) {
        found->second.emplace(component.key, &component);
      }
    }
    const auto component = found->second.find(key);
    return component == found->second.end() ? nullptr : component->second;
  }

 private:
  using ByKey = std::unordered_map<std::string_view, const Component*>;

  const CheckedModules& m_modules;
  std::unordered_map<size_t, ByKey> m_components;
};

/// A name under which a module installs a file.
struct InstalledName {
  std::uint64_t hash;
  size_t module;
  const DeliveredFile* file;
};

/// A file in a folder where it may collide.
struct PlacedFile {
  size_t module;
  const DeliveredFile* file;
  const Component* component;  ///< null if it has no row
  TargetFolder folder;
};

std::string_view GetShortName(const DeliveredFile& file) noexcept {
  return file.shortName.empty() ? file.name : file.shortName;
}

/// Returns the cell of the File table.
std::string FormatFileName(const DeliveredFile& file) {
  return (file.shortName.empty() ? "" : Shorten(file.shortName) + '|') + Shorten(file.name);
}

class FileCheck {
 public:
  FileCheck(const CheckedModules& modules, FindingList& findings)
      : m_modules(modules), m_findings(findings), m_components(modules) {}

  void Run() {
    const auto always = [](const InstalledName&, const InstalledName&) { return true; };
    ForEachName([](const DeliveredFile& file) { return file.name; }, always,
                [&](const std::vector<PlacedFile>& files) { CheckLongName(files); });
    const auto isOtherFile = [](const InstalledName& a, const InstalledName& b) {
      return !IsSameFolded(a.file->name, b.file->name);
    };
    ForEachName([](const DeliveredFile& file) { return GetShortName(file); }, isOtherFile,
                [&](const std::vector<PlacedFile>& files) { CheckShortName(files); });
  }

 private:
  /// Calls `check` with the files of each folder that have the same name and may be installed
  /// together: files of one module, or of modules of different IDs. Folders are resolved only for
  /// names of which `isRelevant` holds for the first file and some other one.
  template <class GetName, class IsRelevant, class Check>
  void ForEachName(GetName getName, IsRelevant isRelevant, Check check) {
    std::vector<InstalledName> names;
    for (const size_t position : m_modules.Scope()) {
      for (const DeliveredFile& file : m_modules.At(position).files) {
        if (!getName(file).empty()) {
          names.push_back({HashFolded(getName(file)), position, &file});
        }
      }
    }
    std::stable_sort(
        names.begin(), names.end(),
        [](const InstalledName& a, const InstalledName& b) { return a.hash < b.hash; });
    for (auto begin = names.begin(); begin != names.end();) {
      const auto end = std::find_if(begin, names.end(), [&](const InstalledName& name) {
        return name.hash != begin->hash ||
               !IsSameFolded(getName(*name.file), getName(*begin->file));
      });
      if (MayCollide(begin, end) &&
          std::any_of(begin + 1, end, [&](const auto& name) { return isRelevant(*begin, name); })) {
        for (const std::vector<PlacedFile>& files : GroupByFolder(begin, end)) {
          check(files);
        }
      }
      begin = end;
    }
  }

  using NameIterator = std::vector<InstalledName>::const_iterator;

  /// Returns whether the names belong to modules of several IDs, or two of them to one module.
  bool MayCollide(NameIterator begin, NameIterator end) const {
    for (NameIterator name = begin + 1; name != end; ++name) {
      if (name->module == name[-1].module ||
          !m_modules.AreAlternatives(name->module, begin->module)) {
        return true;
      }
    }
    return false;
  }

  std::vector<std::vector<PlacedFile>> GroupByFolder(NameIterator begin, NameIterator end) {
    std::unordered_map<std::string, size_t> numbers;
    std::vector<std::vector<PlacedFile>> groups;
    for (NameIterator name = begin; name != end; ++name) {
      TargetFolder folder = m_modules.Resolve(name->module, name->file->directory);
      const std::optional<std::string> text = NormalizeFolder(folder);
      if (!text || name->file->directory.empty()) {
        continue;
      }
      const auto [number, isNew] = numbers.emplace(*text, groups.size());
      if (isNew) {
        groups.emplace_back();
      }
      groups[number->second].push_back({name->module, name->file,
                                        m_components.Find(name->module, name->file->component),
                                        std::move(folder)});
    }
    return groups;
  }

  // ---- Long names

  void CheckLongName(const std::vector<PlacedFile>& files) {
    CheckWithinModules(files,
                       [&](const std::vector<const PlacedFile*>& same) { AddDuplicate(same); });
    const std::vector<const PlacedFile*> sides = FindSidesOf(files);
    const CollidingConditions conditions = CompareAll(ConditionsOf(sides));
    if (sides.size() < 2 || conditions.relation == ConditionRelation::Exclusive ||
        !m_findings.Admit(kFileConflict)) {
      return;
    }
    const std::vector<size_t> modules = ModulesOf(sides);
    const std::string folder = m_modules.Spell(sides.front()->folder);
    Finding& finding =
        m_findings.Add(kFileConflict, modules,
                       Shorten(sides.front()->file->name) + " goes to " + Shorten(folder) +
                           " from " + m_findings.JoinNames(modules, " and from "));
    SetPlace(*sides.front()->file, folder, finding);
    AddValues(sides, finding);
    if (ShareComponent(sides)) {
      AddColumn("File", sides, finding, [](const PlacedFile& file) { return file.file->key; });
    }
    AddConditions(conditions, finding);
    LimitIfRedirected(sides, finding);
  }

  /// Returns files of modules with different IDs that collide.
  std::vector<const PlacedFile*> FindSidesOf(const std::vector<PlacedFile>& files) const {
    const auto isSame = [&](const PlacedFile& side, const PlacedFile& file) {
      return m_modules.AreAlternatives(side.module, file.module) || IsSameResource(side, file);
    };
    std::vector<const PlacedFile*> sides =
        FindSides(m_modules, PointersTo(files), isSame, HashRowOf);
    // Alternatives can agree on the row, or on the identifier of the component.
    return sides.size() < 2 ? sides
                            : FindSides(m_modules, PointersTo(files), isSame, HashComponentIdOf);
  }

  static void SetPlace(const DeliveredFile& file, const std::string& folder, Finding& finding) {
    finding.file = Shorten(file.name);
    finding.folder = folder;
  }

  void AddDuplicate(const std::vector<const PlacedFile*>& same) {
    const CollidingConditions conditions = CompareAll(ConditionsOf(same));
    if (conditions.relation == ConditionRelation::Exclusive || !m_findings.Admit(kDuplicateFile)) {
      return;
    }
    const PlacedFile& first = *same.front();
    const std::string folder = m_modules.Spell(first.folder);
    std::vector<std::string> keys;
    keys.reserve(same.size());
    for (const PlacedFile* const file : same) {
      keys.push_back(Shorten(file->file->key));
    }
    Finding& finding =
        m_findings.Add(kDuplicateFile, {first.module},
                       m_findings.NameOf(first.module) + " installs " + Shorten(first.file->name) +
                           " to " + Shorten(folder) + " " + std::to_string(same.size()) +
                           " times: " + JoinSome(keys, ", "));
    SetPlace(*first.file, folder, finding);
    finding.table = "File";
    AddValues(same, finding);
    AddConditions(conditions, finding);
  }

  // ---- Short names

  void CheckShortName(const std::vector<PlacedFile>& files) {
    const auto isSame = [&](const PlacedFile& side, const PlacedFile& file) {
      return (side.module != file.module && m_modules.AreAlternatives(side.module, file.module)) ||
             IsSameFolded(side.file->name, file.file->name);
    };
    const std::vector<const PlacedFile*> sides =
        FindSides(m_modules, PointersTo(files), isSame,
                  [](const PlacedFile& file) { return HashFolded(file.file->name); });
    if (sides.size() < 2 ||
        CompareAll(ConditionsOf(sides)).relation == ConditionRelation::Exclusive ||
        !m_findings.Admit(kShortNameConflict)) {
      return;
    }
    std::vector<std::string> names;
    names.reserve(sides.size());
    for (const PlacedFile* const side : sides) {
      names.push_back(Shorten(side->file->name) + " of " + m_findings.NameOf(side->module));
    }
    const std::string folder = m_modules.Spell(sides.front()->folder);
    Finding& finding =
        m_findings.Add(kShortNameConflict, ModulesOf(sides),
                       "files have the short name " + Shorten(GetShortName(*sides.front()->file)) +
                           " in " + Shorten(folder) + ": " + JoinSome(names, ", "));
    SetPlace(*sides.front()->file, folder, finding);
    for (const PlacedFile* const side : sides) {
      finding.values.push_back({side->module, "FileName", FormatFileName(*side->file)});
    }
  }

  // ---- Common

  /// Returns whether both are one row of the package, or belong to two components with one
  /// identifier. Other checks report differences between the two. Two rows of one component are not
  /// the same: the package has both.
  static bool IsSameResource(const PlacedFile& a, const PlacedFile& b) {
    const bool hasSameComponent = a.file->component == b.file->component;
    if (IsRow(a) && IsRow(b) && a.file->key == b.file->key && hasSameComponent) {
      return true;
    }
    return HasComponentId(a) && HasComponentId(b) && !hasSameComponent &&
           IsSameFolded(a.component->componentId, b.component->componentId);
  }

  static bool IsRow(const PlacedFile& file) noexcept {
    return !file.file->key.empty() && !file.file->component.empty();
  }

  static bool HasComponentId(const PlacedFile& file) noexcept {
    return file.component && !file.component->componentId.empty();
  }

  /// Without a row, no other module has the same.
  static std::uint64_t HashRowOf(const PlacedFile& file) noexcept {
    return IsRow(file) ? HashText(HashText(kHashSeed, file.file->key), file.file->component)
                       : HashNumber(kHashSeed, file.module);
  }

  static std::uint64_t HashComponentIdOf(const PlacedFile& file) {
    return HasComponentId(file) ? HashFolded(file.component->componentId) : HashRowOf(file);
  }

  /// Calls `check` with the files of each module that has several.
  template <class Check>
  static void CheckWithinModules(const std::vector<PlacedFile>& files, Check check) {
    std::map<size_t, std::vector<const PlacedFile*>> byModule;
    for (const PlacedFile& file : files) {
      byModule[file.module].push_back(&file);
    }
    for (const auto& [module, ofModule] : byModule) {
      if (ofModule.size() > 1) {
        check(ofModule);
      }
    }
  }

  static std::vector<std::string_view> ConditionsOf(const std::vector<const PlacedFile*>& files) {
    std::vector<std::string_view> conditions;
    conditions.reserve(files.size());
    for (const PlacedFile* const file : files) {
      conditions.push_back(file->component ? file->component->condition : std::string_view());
    }
    return conditions;
  }

  static std::vector<size_t> ModulesOf(const std::vector<const PlacedFile*>& files) {
    std::vector<size_t> modules;
    for (const PlacedFile* const file : files) {
      if (std::find(modules.begin(), modules.end(), file->module) == modules.end()) {
        modules.push_back(file->module);
      }
    }
    return modules;
  }

  /// Adds the values that distinguish the files.
  static void AddValues(const std::vector<const PlacedFile*>& files, Finding& finding) {
    AddColumn("Component", files, finding,
              [](const PlacedFile& file) { return file.file->component; });
    AddColumn("Version", files, finding, [](const PlacedFile& file) { return file.file->version; });
  }

  template <class GetValue>
  static void AddColumn(const char* column, const std::vector<const PlacedFile*>& files,
                        Finding& finding, GetValue getValue) {
    const size_t count = std::min(files.size(), FindingList::kMaxModules);
    for (size_t i = 0; i < count; ++i) {
      finding.values.push_back({files[i]->module, column, Shorten(getValue(*files[i]))});
    }
  }

  /// Returns whether some of at most kMaxModules files belong to one component.
  static bool ShareComponent(const std::vector<const PlacedFile*>& files) {
    std::vector<std::string_view> components;
    for (const PlacedFile* const file : files) {
      if (IsRow(*file)) {
        components.push_back(file->file->component);
      }
    }
    std::sort(components.begin(), components.end());
    return std::adjacent_find(components.begin(), components.end()) != components.end();
  }

  /// Makes a finding a warning if the user of a module can redirect one of the folders.
  static void LimitIfRedirected(const std::vector<const PlacedFile*>& files, Finding& finding) {
    if (std::any_of(files.begin(), files.end(),
                    [](const PlacedFile* file) { return file->folder.IsRedirected(); })) {
      LimitSeverity(finding, Severity::Warning);
    }
  }

  const CheckedModules& m_modules;
  FindingList& m_findings;
  ComponentLookup m_components;
};

}  // namespace

void CheckFiles(const CheckedModules& modules, FindingList& findings) {
  FileCheck(modules, findings).Run();
}

}  // namespace qm::merge
