#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/catalog/ModuleSet.h"

namespace mmcat {

// What identifies modules and the files in them. Texts are UTF-8.

struct InventoryFile {
  FileFacts facts;
  std::string md5;  ///< of the file's bytes, from the MsiFileHash table; empty if that has none
};

struct InventoryModule {
  size_t position = 0;  ///< in the set
  std::optional<long> language;
  std::string platform;  ///< such as "Intel"; empty if the module names none
  std::string author;
  std::string subject;
  std::string sha256;  ///< of the module file; empty if it cannot be read
  std::vector<InventoryFile> files;
  std::vector<size_t> needs;  ///< the modules that satisfy its requirements, each once
};

/// Reads every module of a set and hashes its file. Files that cannot be read are added to the
/// report. Throws ServerFailure.
std::vector<InventoryModule> TakeInventory(const ModuleSet& set, Report& report);

}  // namespace mmcat
