#pragma once

#include <deque>

#include "client/catalog/ListedModules.h"
#include "merge/Findings.h"

namespace mmcat {

/// The tables to read of each module, combined with "|".
enum TablesToRead : unsigned { kRequirementTables = 1, kExclusionTables = 2, kFileTables = 4 };

/// The modules of the catalog with the rows of their tables, in catalog order. An index means the
/// same module in both lists.
struct CatalogFacts {
  std::vector<ListedModule> modules;
  std::vector<qm::merge::Module> mergeModules;
  std::deque<std::string> texts;  ///< of the files
};

/// Reads the catalog and shows progress on a console. A module that cannot be read is added to the
/// report and has no rows. Throws ServerFailure if the catalog fails.
CatalogFacts ReadCatalogFacts(unsigned facts, Report& report);

/// Reads the File table of a module. The files refer to texts that are added to `texts`. Throws
/// ServerFailure.
std::vector<qm::merge::DeliveredFile> ReadFileTable(IMergeModule& module,
                                                    std::deque<std::string>& texts);

std::vector<std::string> CollectKeys(const std::vector<ListedModule>& modules);

/// Prints a remark that the catalog has no module with `key`, and suggests the nearest of `keys`,
/// which are those of the catalog.
void PrintUnknownKey(const std::vector<std::string>& keys, const std::string& key);

}  // namespace mmcat
