#pragma once

#include <string>
#include <vector>

#include "client/terminal/Report.h"
#include "common/ComPtr.h"
#include "idl/qmmmupdater.h"

/// A module as the catalog lists it: plain values in UTF-8.
struct ListedModule {
  std::string key;
  std::string moduleId;
  long language = 0;
  std::string version;
  std::string displayName;
  std::string packageCode;
  bool fromGallery = false;
  std::string origin;  ///< the search folder; empty for a module of the gallery
  std::string path;
  CComPtr<IMergeModuleTavik> object;  ///< for further questions
};

/// What a module object tells without its tables. Throws ServerFailure.
ListedModule ReadModule(IMergeModule& module);

/// The modules of a collection, in its order. What a module cannot say goes to the report: a file
/// that the catalog could not read is listed, and its failure reported.
std::vector<ListedModule> ReadModules(IMergeModules& modules, Report& report);

/// The modules for people, under a line for each folder that they come from.
std::string ModuleListText(const std::vector<ListedModule>& modules);

/// The modules for machines: an array.
Json ModuleListJson(const std::vector<ListedModule>& modules);
