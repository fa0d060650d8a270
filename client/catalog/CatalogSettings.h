#pragma once

#include <optional>
#include <string>
#include <vector>

/// Where the catalog looks, in place of what the machine's application services say. UTF-8 paths;
/// an empty one stands for no folder.
struct CatalogSettings {
  std::vector<std::string> folders;  ///< module search folders, in the order of the search
  std::optional<std::string> galleryRoot;
  std::optional<std::string> indexFolder;
  std::optional<std::string> dataFolder;  ///< holds Repositories\Repositories.xml
};

/// Why a folder cannot be one of a module search path; empty when it can.
std::string WhyNoSearchFolder(const std::string& folder);

/// Gives the settings to the application services of this process, unless they are all left out; as
/// soon as one is given, those that are not are set to nothing. To be called before a catalog is
/// made. A folder that does not exist, or that cannot be listed,
/// is remarked on stderr.
void Apply(const CatalogSettings& settings);
