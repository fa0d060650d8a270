#include <algorithm>

#include "merge/Checks.h"
#include "merge/CollidingConditions.h"
#include "merge/CollisionSides.h"
#include "merge/Hashing.h"

namespace qm::merge {

namespace {

struct IdentifiedComponent {
  std::uint64_t hash;
  size_t module;
  const Component* component;
};

class ComponentCheck {
 public:
  ComponentCheck(const CheckedModules& modules, FindingList& findings)
      : m_modules(modules), m_findings(findings) {}

  void Run() {
    std::vector<IdentifiedComponent> components;
    for (const size_t position : m_modules.Scope()) {
      for (const Component& component : m_modules.At(position).components) {
        if (!component.componentId.empty()) {
          components.push_back({HashFolded(component.componentId), position, &component});
        }
      }
    }
    std::stable_sort(components.begin(), components.end(),
                     [](const auto& a, const auto& b) { return a.hash < b.hash; });
    for (auto begin = components.begin(); begin != components.end();) {
      const auto end = std::find_if(begin, components.end(), [&](const auto& component) {
        return component.hash != begin->hash ||
               !IsSameFolded(component.component->componentId, begin->component->componentId);
      });
      if (end - begin > 1) {
        CheckOneId({begin, end});
      }
      begin = end;
    }
  }

 private:
  /// Rows with the same key are one row of the package: CheckRows compares them.
  void CheckOneId(const std::vector<IdentifiedComponent>& components) {
    const auto isSame = [&](const IdentifiedComponent& a, const IdentifiedComponent& b) {
      return a.component->key == b.component->key ||
             (a.module != b.module && m_modules.AreAlternatives(a.module, b.module));
    };
    const std::vector<const IdentifiedComponent*> sides = FindSides(
        m_modules, PointersTo(components), isSame, [](const IdentifiedComponent& component) {
          return HashText(kHashSeed, component.component->key);
        });
    std::vector<std::string_view> texts;
    texts.reserve(sides.size());
    for (const IdentifiedComponent* const side : sides) {
      texts.push_back(side->component->condition);
    }
    const CollidingConditions conditions = CompareAll(texts);
    if (sides.size() > 1 && conditions.relation != ConditionRelation::Exclusive &&
        m_findings.Admit(kComponentConflict)) {
      AddConflict(sides, conditions);
    }
  }

  void AddConflict(const std::vector<const IdentifiedComponent*>& sides,
                   const CollidingConditions& conditions) {
    std::vector<size_t> modules;
    std::vector<std::string> names;
    for (const IdentifiedComponent* const side : sides) {
      if (std::find(modules.begin(), modules.end(), side->module) == modules.end()) {
        modules.push_back(side->module);
      }
      names.push_back(Shorten(side->component->key) + " of " + m_findings.NameOf(side->module));
    }
    Finding& finding = m_findings.Add(kComponentConflict, modules,
                                      "components have the identifier " +
                                          Shorten(sides.front()->component->componentId) + ": " +
                                          JoinSome(names, ", "));
    finding.table = "Component";
    const std::vector<const DeliveredFile*> keyFiles = FindKeyFiles(sides);
    const bool isSameKey = AddColumn(sides, "Component", finding, [&](size_t side) {
      return std::string(sides[side]->component->key);
    });
    const bool isSameFolder = AddColumn(sides, "Folder", finding, [&](size_t side) {
      return m_modules.Spell(
          m_modules.Resolve(sides[side]->module, sides[side]->component->directory));
    });
    // The name of a key file, because its key differs between modules.
    const bool isSameKeyPath = AddColumn(sides, "KeyPath", finding, [&](size_t side) {
      return std::string(keyFiles[side] ? keyFiles[side]->name : sides[side]->component->keyPath);
    });
    const bool isSameVersion = AddColumn(sides, "Version", finding, [&](size_t side) {
      return std::string(keyFiles[side] ? keyFiles[side]->version : std::string_view());
    });
    const bool isSameSize = AddColumn(sides, "FileSize", finding, [&](size_t side) {
      return keyFiles[side] && keyFiles[side]->size ? std::to_string(*keyFiles[side]->size)
                                                    : std::string();
    });
    if (!isSameKey && isSameFolder && isSameKeyPath && isSameVersion && isSameSize) {
      // Both rows install the same, so only the count of users is wrong.
      LimitSeverity(finding, Severity::Warning);
    }
    AddConditions(conditions, finding);
  }

  /// Adds the values of all sides unless they are the same. Returns whether they are.
  template <class GetValue>
  static bool AddColumn(const std::vector<const IdentifiedComponent*>& sides, const char* column,
                        Finding& finding, GetValue getValue) {
    std::vector<std::string> values;
    values.reserve(sides.size());
    for (size_t side = 0; side < sides.size(); ++side) {
      values.push_back(getValue(side));
    }
    const bool isSame = std::all_of(values.begin(), values.end(), [&](const std::string& value) {
      return IsSameFolded(value, values.front());
    });
    for (size_t i = 0; !isSame && i < sides.size(); ++i) {
      finding.values.push_back({sides[i]->module, column, Shorten(values[i])});
    }
    return isSame;
  }

  /// Returns the files at the key paths; null for a key path that is not a file.
  std::vector<const DeliveredFile*> FindKeyFiles(
      const std::vector<const IdentifiedComponent*>& sides) const {
    std::vector<const DeliveredFile*> keyFiles;
    keyFiles.reserve(sides.size());
    for (const IdentifiedComponent* const side : sides) {
      const std::vector<DeliveredFile>& files = m_modules.At(side->module).files;
      const auto found = std::find_if(files.begin(), files.end(), [&](const DeliveredFile& file) {
        return file.key == side->component->keyPath;
      });
      keyFiles.push_back(found == files.end() ? nullptr : &*found);
    }
    return keyFiles;
  }

  const CheckedModules& m_modules;
  FindingList& m_findings;
};

}  // namespace

void CheckComponents(const CheckedModules& modules, FindingList& findings) {
  ComponentCheck(modules, findings).Run();
}

}  // namespace qm::merge
