#pragma once

#include "client/Findings.h"
#include "client/ModuleList.h"

/// Which tables of the modules are wanted.
enum class Facts {
  Requirements,
  All,  ///< exclusions and files as well
};

/// The modules of the catalog with what their tables say, in the order of the catalog; the three
/// lists have the same positions.
struct CatalogFacts {
  std::vector<ListedModule> modules;
  std::vector<MergeModule> merge;
  std::vector<CheckedModule> details;
};

/// Reads the catalog of this process. A module that cannot be read goes to the report, and has no
/// tables. Throws ServerFailure when the catalog fails.
CatalogFacts ReadCatalogFacts(Facts facts, Report& report);

/// The long name of a file as the File table has it ("SHORT.TXT|long name.txt").
std::string LongName(const std::string& fileName);

/// The positions of the modules of a key, "ID" or "ID:language", in any letter case.
std::vector<size_t> ModulesOfKey(const std::vector<ListedModule>& modules, const std::string& key);

/// Remarks that no module has a key, with those that come nearest to it.
void RemarkUnknownKey(const std::vector<ListedModule>& modules, const std::string& key);
