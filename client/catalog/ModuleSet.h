#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ModuleCollection.h"
#include "client/catalog/ModuleNames.h"
#include "client/catalog/ServerFailure.h"
#include "client/terminal/Report.h"
#include "idl/mergeset.h"

namespace mmcat {

// The results of the set component as plain values. Texts are UTF-8. A number that is null in a
// module's table has no value. A module is named by its position in ModuleSet::Modules.

/// A module of the set.
struct ModuleFacts {
  std::string key;
  std::string moduleId;
  std::string version;
  std::string displayName;
  std::string packageCode;
  std::string path;  ///< empty if the module is not on this machine
  bool isFromGallery = false;
  bool isPresent = true;
  qm::common::ComPtr<ISetModule> object;  ///< for further queries
};

struct FileFacts {
  size_t module;
  std::string key;
  std::string name;  ///< long name, or the only one
  std::string shortName;
  std::string directory;   ///< key in the Directory table
  std::string targetPath;  ///< such as "[SystemFolder]drivers"
  bool isRedirected;       ///< the product that gets the module decides where that is
  std::optional<long> size;
  std::string version;
  std::string language;
  std::optional<long> sequence;
};

struct RequirementFacts {
  std::string key;
  std::string text;  ///< "ID:1033, at least 2.0"
  std::string moduleId;
  std::optional<long> language;
  std::string version;
  std::string carriedFrom;  ///< key of a module that was merged into the one with the row
  bool isMetWithin;
  std::optional<size_t> satisfiedBy;  ///< the best module for it, whatever else is merged
};

struct ExclusionFacts {
  size_t module;
  std::string key;
  std::string moduleId;
  std::optional<long> language;
  std::string minVersion;
  std::string maxVersion;
  std::string carriedFrom;  ///< as in RequirementFacts
  std::vector<size_t> excluded;
};

/// A value that a finding is about.
struct FindingValueFacts {
  std::optional<size_t> module;
  std::string column;
  std::string value;
};

struct FindingFacts {
  std::string code;
  std::string severity;     ///< "error", "warning" or "note"
  long mergeErrorType = 0;  ///< 0 if the installer has no number for it
  std::string text;
  std::vector<std::string> moduleKeys;
  std::vector<size_t> modules;
  // What the finding is about. Empty where that does not apply.
  std::optional<RequirementFacts> required;
  std::string file;
  std::string folder;
  std::string table;
  std::string key;  ///< of the row
  std::vector<std::string> versions;
  std::vector<FindingValueFacts> values;
};

struct CheckFacts {
  std::vector<size_t> modules;  ///< positions of the modules that were checked
  std::vector<FindingFacts> findings;
};

struct PlannedFacts {
  size_t module;
  std::optional<size_t> neededBy;
  std::string reason;
  std::vector<size_t> alternatives;  ///< the others that would do, best first
  std::vector<size_t> needs;         ///< the modules of the plan that satisfy its requirements
};

struct MissingFacts {
  size_t neededBy;
  RequirementFacts requirement;
  std::string reason;
};

struct FixFacts {
  std::string text;
  std::vector<size_t> drop;
  std::vector<size_t> modules;  ///< of the plan with this fix
};

struct ConflictFacts {
  std::string text;
  std::vector<size_t> modules;
  std::vector<std::vector<size_t>> chains;
  std::vector<FixFacts> fixes;
  bool isMinimal = true;
};

struct PlanFacts {
  std::vector<PlannedFacts> modules;
  std::vector<MissingFacts> missing;
  std::vector<std::vector<size_t>> cycles;
  bool isProven = true;
  qm::common::ComPtr<IMergePlan> object;  ///< for further queries
};

struct UserFacts {
  size_t module;
  size_t through;
  std::vector<size_t> chain;  ///< from the module to the needed one; at most the first 32
  size_t chainLength;         ///< of the whole chain
};

struct DelivererFacts {
  std::string file;
  std::string moduleKey;
  std::optional<size_t> module;  ///< no value if only an index names it
  std::vector<FileFacts> copies;
  std::string indexFile;  ///< empty if no index names the module for the file
  std::string problem;    ///< what is wrong with the index entry; empty if nothing is
};

struct DescriptionFacts {
  std::string path;
  std::string packageCode;
  std::string moduleId;
  std::string key;
  std::string version;
  std::optional<ServerFailure> failure;
};

/// A set of modules that the set component has read. Every member throws ServerFailure if a call of
/// the component fails.
class ModuleSet {
 public:
  /// Loads the modules of the catalog, and shows progress on a console.
  ModuleSet();

  /// Loads the given modules in the same way.
  explicit ModuleSet(ModuleObjects modules);

  ModuleSet(const ModuleSet&) = delete;
  ModuleSet& operator=(const ModuleSet&) = delete;

  /// Does not release the component's set: the end of the process frees thousands of modules at
  /// once.
  ~ModuleSet() { m_set.Detach(); }

  const std::vector<ModuleFacts>& Modules() const noexcept { return m_modules; }

  /// What the modules can be named by.
  const std::vector<NamedModule>& Names() const;

  enum class FailuresOf { Modules, ModulesAndIndexes };

  /// Adds the files that could not be read to the report.
  void AddFailures(FailuresOf files, Report& report) const;

  // A word for modules is a key or an ID, as the set component finds them, or else a pattern of
  // them or a name as described in ModuleNames.h. Check and Plan fail if a word names no module.

  /// The modules that a word names, in ascending order.
  std::vector<size_t> FindModules(const std::string& word) const;

  /// Checks the modules of the words and what they need; without words, everything.
  CheckFacts Check(const std::vector<std::string>& words) const;

  PlanFacts Plan(const std::vector<std::string>& words) const;

  /// Why no plan is free of objections; empty if one is.
  std::vector<ConflictFacts> ConflictsOf(const PlanFacts& plan) const;

  std::vector<RequirementFacts> RequirementsOf(size_t module) const;

  std::vector<UserFacts> UsersOf(size_t module) const;

  /// All exclusions, in the order of the modules and their tables.
  std::vector<ExclusionFacts> Exclusions() const;

  /// The exclusions of one module.
  std::vector<ExclusionFacts> ExclusionsOf(size_t module) const;

  /// An empty pattern matches every file.
  std::vector<FileFacts> FindFiles(const std::string& pattern) const;

  std::vector<FileFacts> FilesOf(size_t module) const;

  std::vector<DelivererFacts> FindDeliverers(const std::string& fileName) const;

  std::vector<DescriptionFacts> Descriptions() const;

 private:
  void Load(IDispatch& source);
  std::vector<size_t> FindByKey(const std::string& key) const;
  /// Returns keys or paths that the set component knows for the words.
  std::vector<std::string> ResolveKeys(const std::vector<std::string>& words) const;

  qm::common::ComPtr<IMergeSet> m_set;
  std::vector<ModuleFacts> m_modules;
  mutable std::vector<NamedModule> m_names;  ///< made when first needed
};

}  // namespace mmcat
