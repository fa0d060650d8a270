#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/FindingCodes.h"
#include "merge/IndexEntry.h"
#include "merge/MergePlan.h"
#include "merge/TargetFolders.h"

namespace qm::merge {

/// A value that a finding is about. If rows collide, the finding has the values of each.
struct FindingValue {
  std::optional<size_t> module;  ///< position of the module that has it
  std::string column;            ///< of the table, or a name for what the value is
  std::string value;
};

/// A finding of a check. The code and the severity determine what it means; the rest depends on the
/// code and is empty if it does not apply.
struct Finding {
  std::string code;  ///< one of merge/FindingCodes.h
  Severity severity = Severity::Error;
  long mergeError =
      0;  ///< the installer's number for this kind of merge conflict; 0 if it has none
  std::vector<std::string> modules =
      {};                              ///< keys of the modules concerned; a path if one has no ID
  std::string text = {};               ///< a sentence
  std::vector<size_t> positions = {};  ///< of those modules that the set has
  /// A requirement of the first module.
  std::optional<Requirement> required = {};
  std::string file = {};    ///< long name
  std::string folder = {};  ///< where the file goes, as CheckOptions::spell spells it
  std::string table = {};
  std::string key = {};  ///< primary key of a row of the table; columns are joined by "/"
  std::vector<std::string> versions = {};
  std::vector<FindingValue> values = {};
  /// Set for the finding that states how many findings of its code are not listed.
  bool isRest = false;
};

/// Makes a finding with the severity and the merge error of its code.
Finding MakeFinding(const char* code, std::string text);

/// Returns the positions of the modules that an exclusion of the module at `excluding` excludes, or
/// that carry an excluded one, in ascending order. See ModuleIndex::FindExcluded.
std::vector<size_t> FindExcludedModules(const ModuleIndex& set, size_t excluding,
                                        const Exclusion& exclusion);

/// How the checked modules relate to one another.
enum class CheckedAs {
  Catalog,  ///< anything may be merged with anything; modules of one ID are alternatives
  Merge     ///< all are merged into one package
};

struct CheckOptions {
  CheckedAs checkedAs = CheckedAs::Catalog;
  /// Returns where a directory of the module at a position is. If not set, the module's own tables
  /// decide.
  std::function<TargetFolder(size_t module, std::string_view directory)> resolve = nullptr;
  /// Returns how a folder is spelled in findings. If not set, it is "[Root]path".
  std::function<std::string(const TargetFolder&)> spell = nullptr;
};

/// Checks the modules at the positions in `scope`: what would go wrong if they were merged.
/// Includes requirements and exclusions of carried modules; their findings name the carried module.
/// In a catalog, any module of the set may satisfy a requirement; in a merge, only one that is
/// merged.
///
/// A merge adds the rows of one module after the other, and refuses a row whose primary key is
/// already there with other values. Rows of modules with the same ID are not compared: one finding
/// states that these modules are alternatives.
///
/// The findings are in the order of SortFindings. Their number is bounded, see FindingList.
std::vector<Finding> CheckModules(const ModuleIndex& set, const std::vector<size_t>& scope,
                                  const CheckOptions& options = {});

/// Returns one finding for each module that an index table names but the set does not have. A
/// module that two tables name has two.
std::vector<Finding> CheckIndexes(const ModuleIndex& set, const std::vector<IndexEntry>& entries);

/// Sorts findings by code, modules and text. Within a code, the one with `isRest` is last.
void SortFindings(std::vector<Finding>& findings);

}  // namespace qm::merge
