#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/terminal/Report.h"

namespace mmcat {

/// Where the catalog looks, in place of the settings of this machine. Paths are UTF-8 and valid.
struct CatalogSettings {
  std::vector<std::string> folders;  ///< module search folders, in search order
  bool isRecursive = false;          ///< search the folders below these, too
  std::optional<std::string> galleryRoot;
  std::optional<std::string> indexFolder;
  std::optional<std::string> dataFolder;  ///< contains Repositories\Repositories.xml
};

/// Returns why a path does not name an existing folder, as a text for the user; empty if it does.
std::string ValidateFolder(const std::string& folder);

/// The same for a folder of the module search path, which must also satisfy FitsSearchPath.
std::string ValidateSearchFolder(const std::string& folder);

/// Applies the settings to the application services of this process. If any setting is given, the
/// others are cleared; if none is, nothing changes. Call this before creating a Catalog. Returns
/// the folders that could not be searched. Prints a remark for each search folder with modules in
/// folders below it that are not searched. Throws std::length_error if a search path cannot name
/// all folders, with a text for the user, and ServerFailure.
std::vector<FileFailure> ApplyCatalogSettings(const CatalogSettings& settings);

/// Returns whether ApplyCatalogSettings replaced the catalog of this machine.
bool IsCatalogReplaced() noexcept;

}  // namespace mmcat
