#pragma once

#include "client/catalog/ModuleList.h"
#include "merge/Findings.h"

/// Which tables of the modules are wanted; several are combined by "|".
enum Facts : unsigned { kRequirements = 1, kExclusions = 2, kFiles = 4 };

/// The modules of the catalog with what their tables say, in the order of the catalog; the three
/// lists have the same positions.
struct CatalogFacts {
  std::vector<ListedModule> modules;
  std::vector<MergeModule> merge;
  std::vector<CheckedModule> details;
};

/// Reads the catalog of this process, with progress on a console. A module that cannot be read goes
/// to the report, and has no tables. Throws ServerFailure when the catalog fails.
CatalogFacts ReadCatalogFacts(unsigned facts, Report& report);

/// The rows of a module's File table. Throws ServerFailure.
std::vector<DeliveredFile> ReadFiles(IMergeModule& module);

std::vector<std::string> KeysOf(const std::vector<ListedModule>& modules);

/// Remarks that no module has a key, with those of `keys`, the catalog's, that come nearest to it.
void RemarkUnknownKey(const std::vector<std::string>& keys, const std::string& key);
