#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/terminal/Report.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"

namespace mmcat {

/// A module as the catalog lists it. Texts are UTF-8.
struct ListedModule {
  std::string key;
  std::string moduleId;
  std::optional<long> language;  ///< no value for a file that cannot be read
  std::string version;
  std::string displayName;
  std::string packageCode;
  bool fromGallery = false;
  std::string origin;  ///< the search folder; empty for a gallery module
  std::string path;
  bool isUnreadable = false;
  qm::common::ComPtr<IMergeModuleTavik> object;  ///< for further queries
};

/// Reads the properties of a module that need none of its tables. Throws ServerFailure.
ListedModule ReadModule(IMergeModule& module);

/// Reads the modules of a collection, in its order. A file that the catalog could not read is
/// listed too, and its failure added to the report. Throws ServerFailure.
std::vector<ListedModule> ReadModules(IMergeModules& modules, Report& report);

/// The modules as a text table, grouped below a line for each folder that they come from and sorted
/// by file name there. Requires at least one module.
std::string FormatModules(const std::vector<ListedModule>& modules);

/// The modules as CSV, in the order of the list.
std::string FormatModulesCsv(const std::vector<ListedModule>& modules);

/// The modules as a JSON array.
Json MakeModulesJson(const std::vector<ListedModule>& modules);

}  // namespace mmcat
