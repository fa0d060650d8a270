#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mmcat {

/// Where the catalog looks, in place of the settings of this machine. Paths are UTF-8; an empty
/// path means no folder.
struct CatalogSettings {
  std::vector<std::string> folders;  ///< module search folders, in search order
  std::optional<std::string> galleryRoot;
  std::optional<std::string> indexFolder;
  std::optional<std::string> dataFolder;  ///< contains Repositories\Repositories.xml
};

/// Returns why a folder cannot be part of a module search path, or an empty text if it can.
std::string ValidateSearchFolder(const std::string& folder);

/// Applies the settings to the application services of this process. If any setting is given, the
/// others are cleared; if none is, nothing changes. Call this before creating a Catalog. Prints a
/// remark for each folder that does not exist or cannot be listed. Throws ServerFailure.
void ApplyCatalogSettings(const CatalogSettings& settings);

}  // namespace mmcat
